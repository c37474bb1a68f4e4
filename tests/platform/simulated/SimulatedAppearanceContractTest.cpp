#include "platform/contract/AppearanceContract.h"
#include "platform/simulated/SimulatedAppearance.h"

namespace velmora {

class SimulatedAppearanceRig {
public:
    Appearance& appearance() { return appearance_; }
    void ask(const Appearance::Look& look) { appearance_.setLook(look); }
    bool runUntil(const std::function<bool()>& condition) { return condition(); }

private:
    SimulatedAppearance appearance_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, AppearanceContract, SimulatedAppearanceRig);

} // namespace velmora
