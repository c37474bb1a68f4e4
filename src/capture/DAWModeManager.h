// DAWModeManager.h: one public device that plays to an audio interface and the microphone at once.
#pragma once

#include "engine/Problem.h"
#include "platform/AudioDevices.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <optional>
#include <string>

namespace velmora {

/// Lets music software play into the virtual microphone and through the user's interface: builds
/// the aggregate device "Velmora DAW" of both, and removes it again.
///
/// Whether the mode is on, and with which interface, is kept under "dawMode.enabled" and
/// "dawMode.interfaceUID". The device is public and outlives the program; the next start, or the
/// next build, finds it by its fixed UID and replaces it. While the mode is on, the device is built
/// as soon as both its members are there and it is not: after a login, a replug, a restart of the
/// audio service. The engine's own captures and outputs are not concerned.
///
/// Threads: main. Real-time: no.
/// Errors: never throws; a failed build is told by `problem()`.
class DAWModeManager {
public:
    /// Reads what was kept. When the mode is on, the device is built twice in a row. Deliberate:
    /// the second build starts from a device of this very program, as each later one will.
    explicit DAWModeManager(const Platform& platform);
    DAWModeManager(const DAWModeManager&) = delete;
    DAWModeManager& operator=(const DAWModeManager&) = delete;

    [[nodiscard]] bool enabled() const { return enabled_; }
    /// On: with no interface chosen, chooses the default output, unless that is a virtual or an
    /// aggregate device; then builds. Off: removes the device, also one of an earlier run.
    void setEnabled(bool enabled);

    /// The interface's device UID; none = not chosen.
    [[nodiscard]] const std::optional<std::string>& interfaceUID() const { return interfaceUID_; }
    /// Keeps the choice and, while the mode is on, builds the device anew with it.
    void setInterfaceUID(std::optional<std::string> uid);

    /// Why the device was not built; none after a build that succeeded.
    [[nodiscard]] const std::optional<Problem>& problem() const { return problem_; }
    /// The same as a French sentence.
    [[nodiscard]] std::optional<std::string> lastError() const {
        return problem_.transform(frenchSentence);
    }
    /// The device that this program built; 0 = none.
    [[nodiscard]] AudioObjectID aggregateID() const { return aggregateID_; }

    /// Writes both settings.
    void persist();
    /// Removes any DAW device, then builds one of the chosen interface, which becomes the clock,
    /// and the virtual microphone. Builds nothing while no interface is chosen.
    void create();

    /// Told after each operation, when it is complete, and when a device came that was waited for.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    void chooseDefaultOutput();
    void onDeviceChange();
    [[nodiscard]] std::optional<std::string> microphoneUID() const;
    [[nodiscard]] bool membersAreThere() const;
    void build();
    void remove();

    Platform platform_;
    bool enabled_ = false;
    std::optional<std::string> interfaceUID_;
    std::optional<Problem> problem_;
    AudioObjectID aggregateID_ = 0;
    bool isRefused_ = false; ///< although both members were there
    Signal changed_;
    Signal::Connection deviceConnection_;
};

} // namespace velmora
