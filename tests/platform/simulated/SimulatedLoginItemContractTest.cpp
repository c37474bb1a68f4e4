#include "platform/contract/LoginItemContract.h"
#include "platform/simulated/SimulatedLoginItem.h"

namespace velmora {

class SimulatedLoginItemRig {
public:
    LoginItem& item() { return item_; }
    void refuse() { item_.refuse("not today"); }
    void allow() { item_.allow(); }
    void changeElsewhere(bool enabled) { item_.setEnabled(enabled); }

private:
    SimulatedLoginItem item_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, LoginItemContract, SimulatedLoginItemRig);

} // namespace velmora
