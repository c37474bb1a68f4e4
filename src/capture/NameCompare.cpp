#include "capture/NameCompare.h"

#include "capture/Utf8.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

constexpr bool isIn(char32_t point, char32_t first, char32_t last) {
    return point >= first && point <= last;
}

/// Simple case folding. Source: the Unicode Character Database, CaseFolding.txt (15.0), for Basic
/// Latin, Latin-1, Latin Extended-A, Greek and Cyrillic.
constexpr char32_t lowerCase(char32_t point) {
    constexpr char32_t latinStep = 0x20;
    constexpr char32_t cyrillicExtensionStep = 0x50;
    if (isIn(point, U'A', U'Z') || (isIn(point, U'À', U'Þ') && point != U'×') ||
        (isIn(point, U'Α', U'Ϋ') && point != 0x3A2) || isIn(point, U'А', U'Я')) {
        return point + latinStep;
    }
    if (isIn(point, U'Ѐ', U'Џ')) {
        return point + cyrillicExtensionStep;
    }
    if (point == U'Ÿ') {
        return U'ÿ';
    }
    // Latin Extended-A comes in pairs: capitals are even up to U+0137, odd in two stretches.
    const bool capitalIsOdd = isIn(point, 0x139, 0x148) || isIn(point, 0x179, 0x17E);
    const bool capitalIsEven = isIn(point, 0x100, 0x137) || isIn(point, 0x14A, 0x177);
    const bool dottedOrDotlessI = point == U'İ' || point == U'ı';
    if ((capitalIsOdd && point % 2 == 1) ||
        (capitalIsEven && point % 2 == 0 && !dottedOrDotlessI)) {
        return point + 1;
    }
    return point;
}

/// The letters that a lower-case letter from U+00DF or from U+0100 on is sorted as.
constexpr auto latin1Base = std::to_array<std::u32string_view>({
    U"ss", U"a", U"a", U"a", U"a", U"a", U"a", U"ae", U"c", U"e",  U"e",
    U"e",  U"e", U"i", U"i", U"i", U"i", U"d", U"n",  U"o", U"o",  U"o",
    U"o",  U"o", U"÷", U"o", U"u", U"u", U"u", U"u",  U"y", U"th", U"y",
});
constexpr char32_t latin1BaseFirst = U'ß';

struct LetterRange {
    char32_t first;
    char32_t last;
    std::u32string_view base;
};
constexpr auto extendedBase = std::to_array<LetterRange>({
    {0x100, 0x105, U"a"}, {0x106, 0x10D, U"c"},  {0x10E, 0x111, U"d"}, {0x112, 0x11B, U"e"},
    {0x11C, 0x123, U"g"}, {0x124, 0x127, U"h"},  {0x128, 0x131, U"i"}, {0x132, 0x133, U"ij"},
    {0x134, 0x135, U"j"}, {0x136, 0x138, U"k"},  {0x139, 0x142, U"l"}, {0x143, 0x14B, U"n"},
    {0x14C, 0x151, U"o"}, {0x152, 0x153, U"oe"}, {0x154, 0x159, U"r"}, {0x15A, 0x161, U"s"},
    {0x162, 0x167, U"t"}, {0x168, 0x173, U"u"},  {0x174, 0x175, U"w"}, {0x176, 0x178, U"y"},
    {0x179, 0x17E, U"z"}, {0x17F, 0x17F, U"s"},
});

std::u32string baseLetters(char32_t lower) {
    if (isIn(lower, latin1BaseFirst, U'ÿ')) {
        return std::u32string(latin1Base[lower - latin1BaseFirst]);
    }
    const auto* const range = std::ranges::find_if(
        extendedBase, [&](const LetterRange& item) { return isIn(lower, item.first, item.last); });
    return range == extendedBase.end() ? std::u32string(1, lower) : std::u32string(range->base);
}

std::u32string folded(std::string_view text) {
    std::u32string points = codePoints(text);
    std::ranges::transform(points, points.begin(), lowerCase);
    return points;
}

} // namespace

CollationKey collationKey(std::string_view name) {
    CollationKey key{.base = {}, .folded = folded(name)};
    for (const char32_t point : key.folded) {
        key.base += baseLetters(point);
    }
    return key;
}

bool containsIgnoringCase(std::string_view name, std::string_view part) {
    return folded(name).find(folded(part)) != std::u32string::npos;
}

} // namespace velmora
