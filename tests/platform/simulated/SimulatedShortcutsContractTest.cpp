#include "platform/contract/GlobalShortcutsContract.h"
#include "platform/simulated/SimulatedShortcuts.h"

#include <string>

namespace velmora {
namespace {

struct SimulatedShortcutsRig {
    GlobalShortcuts& shortcuts() { return simulated; }
    void appear() { simulated.appear(); }
    void vanish() { simulated.vanish(); }
    void refuse() { simulated.refuse(); }
    void press(const std::string& id) { simulated.press(id); }
    void release(const std::string& id) { simulated.release(id); }
    template <typename Condition>
    bool until(Condition condition) {
        return condition();
    }

    SimulatedShortcuts simulated;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, GlobalShortcutsContract, SimulatedShortcutsRig);

} // namespace
} // namespace velmora
