// MixerClient.h: works the program by its commands, over D-Bus.
#pragma once

#include "soak/Action.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <QDBusConnection>

namespace velmora::soak {

/// What a command said, and how it ended.
struct Said {
    int status = -1; ///< 0 done, 1 refused, 2 misused; -1 = nobody answered
    std::string output{};
    std::string error{};
};

/// Threads: main.
class MixerClient {
public:
    explicit MixerClient(const std::string& busAddress);
    ~MixerClient();
    MixerClient(const MixerClient&) = delete;
    MixerClient& operator=(const MixerClient&) = delete;

    [[nodiscard]] Said run(const std::vector<std::string>& words);
    /// Of a command that shows something; null when it did not.
    [[nodiscard]] nlohmann::json json(std::vector<std::string> words);
    /// An action on the mixer that a command does, as the action's text or as a method of its own.
    [[nodiscard]] Said perform(const Action& action, bool byMethod);

    /// The longest that an answer took so far.
    [[nodiscard]] std::chrono::milliseconds slowestAnswer() const { return slowest_; }

private:
    [[nodiscard]] QDBusMessage call(const QString& method, const QVariantList& arguments);

    QDBusConnection bus_;
    std::chrono::milliseconds slowest_{};
};

} // namespace velmora::soak
