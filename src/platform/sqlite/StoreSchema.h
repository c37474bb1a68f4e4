// StoreSchema.h: the shape of the store's file, and how an older one becomes today's.
#pragma once

#include "platform/Status.h"

#include <cstdint>

namespace velmora {

class Database;

/// The `user_version` that this program writes: the number of steps.
[[nodiscard]] std::int64_t newestStoreVersion();

/// SQLITE_FORMAT, which SQLite itself no longer gives: the file was written by a later version.
inline constexpr Status statusNewerStore = 24;

/// Runs the steps that the file has not seen, each in one transaction that ends by counting it.
/// Errors: `statusNewerStore` without a change, or SQLite's code with the failing step undone.
[[nodiscard]] Status migrateStore(Database& database);

} // namespace velmora
