// CommandClient.h: a command that is carried out by the mixer that runs.
#pragma once

#include "operations/CommandHelp.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>

namespace velmora {

struct LaunchRequest;

/// Talks to the running program over the session's D-Bus, prints what it answers and ends with the
/// command's status.
///
/// Threads: main; needs a QCoreApplication.
class CommandClient : public QObject {
    Q_OBJECT

public:
    /// @param lookup  of the user's language, for what this program says by itself
    explicit CommandClient(Lookup lookup);

    /// Returns when the command is done; "watch" when the mixer has gone.
    [[nodiscard]] int run(const LaunchRequest& request);

private Q_SLOTS:
    void print(const QStringList& lines, const QString& state);
    void end();

private:
    [[nodiscard]] bool openMixer() const;
    [[nodiscard]] int carryOut(const LaunchRequest& request);
    [[nodiscard]] int watch();
    [[nodiscard]] int refuse(const std::string& sentence) const;

    Lookup lookup_;
    bool asJson_ = false;
};

} // namespace velmora
