#include "platform/contract/AppearanceContract.h"
#include "platform/desktop/DesktopAppearance.h"
#include "platform/desktop/FakePortal.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

namespace velmora {

class DesktopAppearanceRig {
public:
    Appearance& appearance() { return appearance_; }
    void turn(bool dark) { portal_.change(dark ? prefersDark : prefersLight); }
    bool runUntil(const std::function<bool()>& condition) { return loop_.runUntil(condition); }

private:
    QtEventLoop loop_;
    PrivateBus bus_;
    FakePortal portal_{bus_.address(), prefersLight};
    DesktopAppearance appearance_{bus_.address()};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, AppearanceContract, DesktopAppearanceRig);

} // namespace velmora
