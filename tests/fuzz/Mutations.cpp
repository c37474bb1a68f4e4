#include "Mutations.h"

#include <algorithm>

namespace velmora {

Input Mutations::next() {
    Input input = seeds_[below(seeds_.size())];
    for (std::size_t places = 1 + below(4); places > 0; --places) {
        change(input);
    }
    return input;
}

/// 0 when there is nothing to choose from.
std::size_t Mutations::below(std::size_t limit) {
    return limit == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
}

void Mutations::change(Input& input) {
    const auto place = [&](std::size_t at) {
        return input.begin() + static_cast<std::ptrdiff_t>(at);
    };
    const std::size_t at = below(input.size() + 1);
    switch (below(6)) {
    case 0: // cut off
        input.resize(at);
        break;
    case 1: // one bit flipped
        if (at < input.size()) {
            input[at] = static_cast<std::uint8_t>(input[at] ^ (1U << below(8)));
        }
        break;
    case 2: // any byte put in
        input.insert(place(at), static_cast<std::uint8_t>(below(256)));
        break;
    case 3: // a piece cut out
        input.erase(place(at), place(at + below(std::min<std::size_t>(20, input.size() - at) + 1)));
        break;
    case 4: { // a piece repeated elsewhere
        const std::size_t from = below(input.size() + 1);
        const std::size_t length = below(std::min<std::size_t>(60, input.size() - from) + 1);
        const Input piece(place(from), place(from + length));
        input.insert(place(at), piece.begin(), piece.end());
        break;
    }
    default: { // a piece of another input put in
        const Input& other = seeds_[below(seeds_.size())];
        const auto from = static_cast<std::ptrdiff_t>(below(other.size() + 1));
        const auto length = static_cast<std::ptrdiff_t>(
            below(std::min<std::size_t>(60, other.size() - static_cast<std::size_t>(from)) + 1));
        input.insert(place(at), other.begin() + from, other.begin() + from + length);
    }
    }
}

} // namespace velmora
