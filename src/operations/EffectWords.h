// EffectWords.h: effect settings as words that a user writes and reads.
#pragma once

#include "effects/FXParams.h"
#include "operations/Refusal.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

class AppSettings;

/// The same words in every language.
struct EffectWord {
    std::string_view name;   ///< "lowcut"
    std::string_view values; ///< what it takes: "off, 75, 150"
};
[[nodiscard]] std::span<const EffectWord> effectWords();

/// Name and value of every effect, in the order of `effectWords`; a value reads as it is written.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> effectValues(const FXParams& params);

/// `params` with one effect set.
[[nodiscard]] Answer<FXParams> withEffect(FXParams params,
                                          std::string_view name,
                                          std::string_view value,
                                          const AppSettings& settings);

} // namespace velmora
