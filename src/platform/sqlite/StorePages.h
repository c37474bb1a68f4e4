// StorePages.h: the rows in a store file's pages, when SQLite finds no way to them.
#pragma once

#include "platform/sqlite/StoredRow.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The rows in every page of the table that is whole, whatever the others are like. Rows whose
/// value does not decode are left out: nothing else tells them from chance.
///
/// Source: sqlite.org, "Database File Format", version 3.40: b-tree pages, records, the freelist
/// and the write-ahead log.
/// @param file  the main file's bytes; may be empty
/// @param log   the write-ahead log's bytes; its whole transactions count
[[nodiscard]] std::vector<StoredRow> rowsInPages(std::string_view file, std::string_view log);

} // namespace velmora
