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

/// The values of a file that a later version has written, as far as this one understands it.
[[nodiscard]] StoredValues readNewer(const StoreFile& file);

/// The values of a file that cannot be opened for writing, as far as they can be read; none when
/// nothing can.
[[nodiscard]] std::optional<StoredValues> readSnapshot(const StoreFile& file);

} // namespace velmora
