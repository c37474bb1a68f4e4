#include "presets/SetAsidePresets.h"

#include "presets/PresetCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>
#include <ranges>
#include <string_view>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view toldKey = "presets.unreadable.told";

constexpr std::string_view unreadable = "presets.unreadable";
constexpr std::string_view unsaved = "presets.unsaved";

/// @param copy  0-based
std::string keyOf(std::string_view family, std::size_t copy) {
    return std::string(family) + (copy == 0 ? "" : "." + std::to_string(copy + 1));
}

/// A copy, sorted.
struct Sorted {
    std::vector<Preset> readable;
    std::optional<DefaultsValue> rest; ///< as a list of its own; the whole copy when it is none
};

std::optional<Preset> preset(const nlohmann::json& element) {
    try {
        return presetFromJson(element);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

/// A list under the wrong type is one all the same. Throws when the value is no text.
std::string textOf(const DefaultsValue& copy) {
    if (const auto* const bytes = std::get_if<Bytes>(&copy)) {
        return {bytes->begin(), bytes->end()};
    }
    return std::get<std::string>(copy);
}

Sorted sorted(const DefaultsValue& copy) {
    try {
        const auto list = parsedPresetText(textOf(copy));
        if (!list.is_array()) {
            return {.readable = {}, .rest = copy};
        }
        Sorted result;
        auto rest = nlohmann::ordered_json::array();
        for (const auto& element : list) {
            if (auto readable = preset(element)) {
                result.readable.push_back(*std::move(readable));
            } else {
                rest.push_back(nlohmann::ordered_json(element));
            }
        }
        if (!rest.empty()) {
            const auto text = presetText(rest, -1);
            result.rest = Bytes(text.begin(), text.end());
        }
        return result;
    } catch (const std::exception&) {
        return {.readable = {}, .rest = copy};
    }
}

} // namespace

SetAsidePresets::SetAsidePresets(DefaultsStore& defaults) : defaults_(defaults) {
    read();
}

void SetAsidePresets::read() {
    keys_.clear();
    rests_.clear();
    readable_.clear();
    for (const auto family : {unreadable, unsaved}) {
        for (std::size_t copy = 0; const auto value = defaults_.get(keyOf(family, copy)); ++copy) {
            auto [readable, rest] = sorted(*value);
            std::ranges::move(readable, std::back_inserter(readable_));
            if (rest) {
                rests_.push_back(*std::move(rest));
            }
            keys_.push_back(keyOf(family, copy));
        }
    }
}

void SetAsidePresets::add(const DefaultsValue& list) {
    const auto lies = [&](const std::string& key) { return defaults_.get(key) == list; };
    if (std::ranges::any_of(keys_, lies)) {
        return;
    }
    std::size_t copy = 0;
    while (defaults_.get(keyOf(unreadable, copy))) {
        ++copy;
    }
    defaults_.set(keyOf(unreadable, copy), list);
    read();
}

void SetAsidePresets::forgetReadable() {
    // Whoever is interrupted here finds some presets a second time, and loses none: what cannot be
    // read moves forward only.
    const bool wasNews = isNews();
    const auto before = keys_;
    std::vector<std::string> kept;
    for (const DefaultsValue& rest : rests_) {
        kept.push_back(keyOf(unreadable, kept.size()));
        defaults_.set(kept.back(), rest);
    }
    for (const std::string& key : before | std::views::reverse) {
        if (std::ranges::find(kept, key) == kept.end()) {
            defaults_.remove(key);
        }
    }
    read();
    if (keys_.empty()) {
        defaults_.remove(toldKey);
    } else if (!wasNews) {
        markTold();
    }
}

bool SetAsidePresets::isNews() const {
    return !keys_.empty() && defaults_.read<std::string>(toldKey) != summary();
}

void SetAsidePresets::markTold() {
    if (isNews()) {
        defaults_.set(toldKey, summary());
    }
}

std::string SetAsidePresets::summary() const {
    return std::to_string(keys_.size()) + "/" + std::to_string(readable_.size());
}

} // namespace velmora
