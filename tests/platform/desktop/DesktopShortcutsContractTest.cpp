#include "platform/contract/GlobalShortcutsContract.h"
#include "platform/desktop/DesktopShortcuts.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/desktop/ShortcutsPortal.h"
#include "platform/qt/QtEventLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace velmora {
namespace {

struct DesktopShortcutsRig {
    GlobalShortcuts& shortcuts() { return real; }
    void appear() {
        portal.emplace(bus.address());
        portal->bindResponse = response;
    }
    void vanish() { portal.reset(); }
    void refuse() {
        response = PortalRequest::cancelled;
        portal->bindResponse = response;
    }
    void press(const std::string& id) { portal->press(QString::fromStdString(id)); }
    void release(const std::string& id) { portal->release(QString::fromStdString(id)); }
    bool until(const std::function<bool()>& condition) { return loop.runUntil(condition); }

    QtEventLoop loop;
    PrivateBus bus;
    std::optional<ShortcutsPortal> portal;
    uint response = PortalRequest::done;
    DesktopShortcuts real{bus.address()};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, GlobalShortcutsContract, DesktopShortcutsRig);

} // namespace
} // namespace velmora
