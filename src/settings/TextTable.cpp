#include "settings/TextTable.h"

#include <cstdio>
#include <cstdlib>

namespace velmora {

TextTable::TextTable(std::initializer_list<std::span<const TextPair>> lists) {
    for (const auto list : lists) {
        for (const auto& [french, english] : list) {
            if (!englishByFrench_.emplace(french, english).second) {
                std::fprintf(stderr,
                             "duplicate text: \"%.*s\"\n",
                             static_cast<int>(french.size()),
                             french.data());
                std::abort();
            }
        }
    }
}

std::optional<std::string_view> TextTable::english(std::string_view french) const {
    const auto found = englishByFrench_.find(french);
    if (found == englishByFrench_.end()) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace velmora
