#include "platform/contract/DefaultsStoreContract.h"
#include "platform/sqlite/StoreFixture.h"

namespace velmora {

struct SqliteRig : StoreOnDisk {
    SqliteRig() : StoreOnDisk(false) {}
};

INSTANTIATE_TYPED_TEST_SUITE_P(Sqlite, DefaultsStoreContract, SqliteRig);

} // namespace velmora
