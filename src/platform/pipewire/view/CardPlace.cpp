#include "platform/pipewire/view/CardPlace.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmora::pipewire {
namespace {

/// What a profile's name says of channels, coding and direction instead of the socket.
constexpr std::array<std::string_view, 13> otherWords = {"mono",
                                                         "stereo",
                                                         "multichannel",
                                                         "channel",
                                                         "fallback",
                                                         "ac3",
                                                         "dts",
                                                         "a52",
                                                         "duplex",
                                                         "input",
                                                         "output",
                                                         "sink",
                                                         "source"};

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool isSocketWord(std::string_view word, bool mayBeNumber) {
    return !word.empty() && !word.starts_with("surround") &&
           std::ranges::find(otherWords, word) == otherWords.end() &&
           (mayBeNumber || !std::ranges::all_of(word, isDigit));
}

/// `profile` is a node's share of its card's profile: "analog-surround-40", "hdmi-stereo-extra1",
/// "pro-output-3", or with the use case's verb in front "HiFi: Headphones: sink".
std::string kindOf(std::string_view profile) {
    if (profile.starts_with("pro-")) {
        return {};
    }
    const auto verbEnd = profile.find(": ");
    const bool hasVerb = verbEnd != std::string_view::npos;
    if (hasVerb) {
        profile.remove_prefix(verbEnd);
    }
    std::string kind;
    std::string word;
    const auto endWord = [&] {
        if (isSocketWord(word, hasVerb)) {
            kind += (kind.empty() ? "" : " ") + word;
        }
        word.clear();
    };
    for (const char letter : profile) {
        if (isDigit(letter) || (letter >= 'a' && letter <= 'z')) {
            word += letter;
        } else if (letter >= 'A' && letter <= 'Z') {
            word += static_cast<char>(letter - 'A' + 'a');
        } else {
            endWord();
        }
    }
    endWord();
    return kind;
}

} // namespace

CardPlace cardPlace(const Properties& node, const std::string& card) {
    return {.card = card,
            .direction = text(node, "media.class"),
            .kind = kindOf(text(node, "device.profile.name")),
            .pcm = text(node, "alsa.device")};
}

bool isTellable(const CardPlace& place) {
    return !place.card.empty() && !(place.kind.empty() && place.pcm.empty());
}

bool isSamePlace(const CardPlace& one, const CardPlace& other) {
    if (!isTellable(one) || one.card != other.card || one.direction != other.direction) {
        return false;
    }
    const bool areKindsKnown = !one.kind.empty() && !other.kind.empty();
    return areKindsKnown ? one.kind == other.kind : !one.pcm.empty() && one.pcm == other.pcm;
}

} // namespace velmora::pipewire
