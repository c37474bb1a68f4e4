#include "presets/SetAsidePresets.h"

#include "presets/PresetCoding.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <iterator>
#include <optional>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view toldKey = "presets.unreadable.told";

std::string keyOf(std::size_t copy) {
    const std::string first = "presets.unreadable";
    return copy == 0 ? first : first + "." + std::to_string(copy + 1);
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
    rests_.clear();
    readable_.clear();
    for (copies_ = 0; const auto copy = defaults_.get(keyOf(copies_)); ++copies_) {
        auto [readable, rest] = sorted(*copy);
        std::ranges::move(readable, std::back_inserter(readable_));
        if (rest) {
            rests_.push_back(*std::move(rest));
        }
    }
    hasUnreadable_ = !rests_.empty();
}

void SetAsidePresets::add(const DefaultsValue& unreadable) {
    for (std::size_t copy = 0; copy < copies_; ++copy) {
        if (defaults_.get(keyOf(copy)) == unreadable) {
            return;
        }
    }
    defaults_.set(keyOf(copies_), unreadable);
    read();
}

void SetAsidePresets::forgetReadable() {
    // Whoever is interrupted here finds some presets a second time, and loses none.
    const bool wasNews = isNews();
    const auto before = copies_;
    for (std::size_t copy = 0; copy < rests_.size(); ++copy) {
        defaults_.set(keyOf(copy), rests_[copy]);
    }
    for (std::size_t copy = before; copy-- > rests_.size();) {
        defaults_.remove(keyOf(copy));
    }
    read();
    if (copies_ == 0) {
        defaults_.remove(toldKey);
    } else if (!wasNews) {
        markTold();
    }
}

bool SetAsidePresets::isNews() const {
    return copies_ > 0 && defaults_.read<std::string>(toldKey) != summary();
}

void SetAsidePresets::markTold() {
    if (isNews()) {
        defaults_.set(toldKey, summary());
    }
}

std::string SetAsidePresets::summary() const {
    return std::to_string(copies_) + "/" + std::to_string(readable_.size());
}

} // namespace velmora
