// How often a silenced application that starts its stream anew can be heard, beside loops that want
// a processor each. Not a test: prints the figures.

#include "SilencedRestarts.h"

#include <iostream>
#include <list>

namespace velmora {
namespace {

using namespace support;

constexpr int restarts = 100;

class RestartFigures : public SilencedRestarts, public testing::WithParamInterface<int> {};

TEST_P(RestartFigures, OfAHundred) {
    std::list<ChildProcess> loops;
    for (int count = 0; count < GetParam(); ++count) {
        loops.push_back(session().start({"/bin/sh", "-c", "while :; do :; done"}, "busy-loop"));
    }
    std::vector<Restart> all = restart(restarts);

    std::ranges::sort(all, {}, &Restart::heard);
    std::cout << "Busy loops: " << GetParam() << "\nheard:";
    for (const Restart& one : all) {
        if (one.heard.count() > 0) {
            std::cout << ' ' << one.heard.count() << " ms (the control thread waited "
                      << one.longestWait.count() << " ms)";
        }
    }
    const auto inexcusable = std::ranges::count_if(all, std::not_fn(isExcusable));
    std::ranges::sort(all, {}, &Restart::longestWait);
    std::cout << "\nheard although the control thread had waited for 2 ms at most: " << inexcusable
              << "\nlongest wait of the control thread: median "
              << all[all.size() / 2].longestWait.count() << " ms, of all "
              << all.back().longestWait.count() << " ms" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(BusyLoops, RestartFigures, testing::Values(0, 2, 4, 8));

} // namespace
} // namespace velmora
