#include "platform/contract/DefaultsStoreContract.h"
#include "platform/simulated/SimulatedDefaultsStore.h"

namespace velmora {

class SimulatedStoreRig {
public:
    DefaultsStore& store() { return *store_; }
    void nextLaunch() { store_ = std::make_unique<SimulatedDefaultsStore>(store_->kept()); }
    void refuseWrites() {
        store_->refuseWrites({.kind = StoreProblem::Kind::unwritable, .status = -30});
    }
    void allowWrites() { store_->allowWrites(); }

private:
    std::unique_ptr<SimulatedDefaultsStore> store_ = std::make_unique<SimulatedDefaultsStore>();
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, DefaultsStoreContract, SimulatedStoreRig);

} // namespace velmora
