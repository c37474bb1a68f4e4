// A silenced application that starts its stream anew is not heard for a moment either.

#include "SilencedRestarts.h"

namespace velmora {
namespace {

constexpr int fewRestarts = 8;

TEST_F(SilencedRestarts, AreNotHeardForAMoment) {
    for (const Restart& one : restart(fewRestarts)) {
        EXPECT_TRUE(isExcusable(one))
            << one.heard.count() << " ms heard; the control thread waited "
            << one.longestWait.count() << " ms";
    }
}

} // namespace
} // namespace velmora
