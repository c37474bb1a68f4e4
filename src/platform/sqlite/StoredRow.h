// StoredRow.h: one row of the store's table, whether or not this program understands its value.
#pragma once

#include "platform/DefaultsStore.h"

#include <cstdint>
#include <string>

namespace velmora {

struct StoredRow {
    std::string key;
    std::int64_t type{}; ///< a `CodedValue::Type`, or one that a later version has added
    Bytes value;
};

} // namespace velmora
