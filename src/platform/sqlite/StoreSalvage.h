// StoreSalvage.h: what can still be read of a damaged store file.
#pragma once

#include "platform/Status.h"
#include "platform/sqlite/StoredRow.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <vector>

namespace velmora {

class StoreFile;

/// Every row that can be read; the file is not touched.
[[nodiscard]] std::vector<StoredRow> salvageRows(const StoreFile& file);

/// Writes a new file with these rows and lets it take the damaged one's place, which keeps every
/// byte under the dated name that is returned. Until the new file is whole, the damaged one stays.
[[nodiscard]] StatusOr<std::filesystem::path>
replaceDamaged(const StoreFile& file,
               const std::vector<StoredRow>& rows,
               std::chrono::system_clock::time_point now);

} // namespace velmora
