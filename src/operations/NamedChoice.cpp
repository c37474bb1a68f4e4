#include "operations/NamedChoice.h"

#include "capture/NameCompare.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace velmora {

namespace {

using Found = std::expected<std::size_t, NameMiss>;

template <typename Fits>
Found onlyOne(std::span<const NamedChoice> choices, Fits fits) {
    Found found = std::unexpected(NameMiss::none);
    for (std::size_t index = 0; index < choices.size(); ++index) {
        if (!fits(choices[index])) {
            continue;
        }
        if (found) {
            return std::unexpected(NameMiss::several);
        }
        found = index;
    }
    return found;
}

std::optional<std::size_t> numberIn(std::string_view word) {
    std::size_t number = 0;
    const auto* const end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, number);
    return error == std::errc{} && last == end ? std::optional(number) : std::nullopt;
}

} // namespace

Found chosen(std::span<const NamedChoice> choices, std::string_view word) {
    if (word.empty()) {
        return std::unexpected(NameMiss::none);
    }
    const auto missed = [](const Found& found) {
        return !found && found.error() == NameMiss::none;
    };
    auto found = onlyOne(choices, [&](const NamedChoice& one) { return one.id == word; });
    if (missed(found)) {
        found = onlyOne(choices, [&](const NamedChoice& one) { return one.alias == word; });
    }
    if (missed(found)) {
        found = onlyOne(choices, [&](const NamedChoice& one) { return one.name == word; });
    }
    if (const auto number = numberIn(word);
        missed(found) && number && *number >= 1 && *number <= choices.size()) {
        found = *number - 1;
    }
    if (missed(found)) {
        const auto beginning = collationKey(word).folded;
        found = onlyOne(choices, [&](const NamedChoice& one) {
            return collationKey(one.name).folded.starts_with(beginning);
        });
    }
    return found;
}

std::vector<std::string> distinctWords(std::span<const NamedChoice> choices) {
    constexpr unsigned char firstPrintable = ' ';
    constexpr char rubout = '\x7f';
    std::vector<std::string> words;
    for (std::size_t index = 0; index < choices.size(); ++index) {
        const NamedChoice& choice = choices[index];
        for (const std::string& word : {choice.name, choice.id}) {
            const bool staysOnALine = std::ranges::all_of(word, [](char byte) {
                return static_cast<unsigned char>(byte) >= firstPrintable && byte != rubout;
            });
            if (staysOnALine && chosen(choices, word) == index) {
                words.push_back(word);
                break;
            }
        }
    }
    return words;
}

} // namespace velmora
