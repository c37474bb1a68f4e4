#include "platform/contract/DefaultsStoreContract.h"
#include "platform/sqlite/StoreFixture.h"

namespace velmora {

INSTANTIATE_TYPED_TEST_SUITE_P(Sqlite, DefaultsStoreContract, StoreOnDisk);

} // namespace velmora
