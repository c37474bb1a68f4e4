#include "settings/Texts.h"

namespace velmora {

std::string_view inEnglish(std::string_view french) {
    static const TextTable table{fixedTexts(), addedTexts(), commandTexts()};
    return table.english(french).value_or(french);
}

} // namespace velmora
