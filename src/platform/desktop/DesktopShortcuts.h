// DesktopShortcuts.h: global shortcuts, as the desktop portal has them.
#pragma once

#include "platform/GlobalShortcuts.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora {

class PortalShortcuts;

/// Looks for a portal that has shortcuts, and binds what is wanted with each one that comes.
///
/// Threads: main; needs a QCoreApplication and its running event loop.
class DesktopShortcuts final : public GlobalShortcuts {
public:
    /// @param busAddress  the bus that the portal is on; empty = the session's
    explicit DesktopShortcuts(const std::string& busAddress = {});
    ~DesktopShortcuts() override;
    DesktopShortcuts(const DesktopShortcuts&) = delete;
    DesktopShortcuts& operator=(const DesktopShortcuts&) = delete;

    [[nodiscard]] State state() const override { return state_; }
    [[nodiscard]] const std::map<std::string, std::string>& triggers() const override {
        return triggers_;
    }
    [[nodiscard]] Signal& changed() override { return changed_; }

    void bind(std::vector<GlobalShortcut> shortcuts, Listener listener) override;
    void unbind() override;

private:
    class Portal;
    struct Wanted {
        std::vector<GlobalShortcut> shortcuts;
        Listener listener;
    };

    void follow(bool hasShortcuts);
    void ask();
    void giveUp(bool isRefused);
    void tell(const std::string& id, bool isPressed);
    void releaseHeld();
    void become(State state, std::map<std::string, std::string> triggers = {});
    void dropSession();

    std::string busAddress_;
    State state_ = State::unavailable;
    std::map<std::string, std::string> triggers_;
    std::optional<Wanted> wanted_;
    std::set<std::string> held_; ///< keys that are pressed now
    Signal changed_;
    std::unique_ptr<Portal> portal_;
    std::unique_ptr<PortalShortcuts> session_;
};

} // namespace velmora
