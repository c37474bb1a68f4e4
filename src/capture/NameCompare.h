// NameCompare.h: compares the names of applications and devices as a reader would.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace velmora {

/// What a name is sorted by. Two keys are equal when the names differ in nothing but case.
///
/// A fixed rule for the Latin, Greek and Cyrillic letters, the same on every machine: the system's
/// own collation depends on which languages are installed, and is by bytes where there are none.
struct CollationKey {
    std::u32string base;   ///< lower case without accents: "É" is sorted with "e"
    std::u32string folded; ///< lower case with accents: decides between equal base letters

    auto operator<=>(const CollationKey&) const = default;
};

/// Shape: UTF-8. A byte that is not UTF-8 stands for itself.
[[nodiscard]] CollationKey collationKey(std::string_view name);

/// Regardless of case; accents count.
[[nodiscard]] bool containsIgnoringCase(std::string_view name, std::string_view part);

} // namespace velmora
