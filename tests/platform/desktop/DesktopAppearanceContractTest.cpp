#include "platform/contract/AppearanceContract.h"
#include "platform/desktop/DesktopAppearance.h"
#include "platform/desktop/FakePortal.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

#include <utility>

namespace velmora {

class DesktopAppearanceRig {
public:
    Appearance& appearance() { return appearance_; }
    void ask(const Appearance::Look& look) {
        if (std::exchange(asked_.isDark, look.isDark) != look.isDark) {
            portal_.change(colorScheme, look.isDark ? prefersDark : prefersLight);
        }
        if (std::exchange(asked_.isHighContrast, look.isHighContrast) != look.isHighContrast) {
            portal_.change("contrast", look.isHighContrast ? 1U : 0U);
        }
        if (std::exchange(asked_.isStill, look.isStill) != look.isStill) {
            portal_.change("reduced-motion", look.isStill ? 1U : 0U);
        }
        if (std::exchange(asked_.textScale, look.textScale) != look.textScale) {
            portal_.change(textScale, look.textScale, gnomeInterface);
        }
    }
    bool runUntil(const std::function<bool()>& condition) { return loop_.runUntil(condition); }

private:
    Appearance::Look asked_;
    QtEventLoop loop_;
    PrivateBus bus_;
    FakePortal portal_{bus_.address(), prefersLight};
    DesktopAppearance appearance_{bus_.address()};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, AppearanceContract, DesktopAppearanceRig);

} // namespace velmora
