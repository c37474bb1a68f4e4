// StoreSnapshot.h: looks into a store file without touching it.
#pragma once

#include "platform/Status.h"
#include "platform/sqlite/StoreConnection.h"
#include "platform/sqlite/StoreFile.h"

#include <cstdint>
#include <optional>

namespace velmora {

/// The file's `user_version`, its log included; none when the file says nothing of the kind.
/// SQLite would make companions beside the file even to read it, so a file with a log is read in a
/// private copy.
[[nodiscard]] std::optional<std::int64_t> storedVersion(const StoreFile& file);

/// The values of a file that cannot be opened for writing; none when there is nothing to read.
[[nodiscard]] std::optional<StoredValues> readSnapshot(const StoreFile& file);

} // namespace velmora
