// EffectTexts.h: what each effect's row says about its present setting.
#pragma once

#include <QList>
#include <QString>

namespace velmora {

struct FXParams;

/// Steps out of range read as the step that is heard. The words are the same in every language;
/// a negative number carries the typographic minus (U+2212).

// The steps of each choice, as they are shown, in their order.
[[nodiscard]] QList<QString> lowcutSteps();
[[nodiscard]] QList<QString> compSteps();
[[nodiscard]] QList<QString> reverbCharacters();
/// The strengths of compression in words: the steps themselves are dots.
[[nodiscard]] QList<QString> compNames();

[[nodiscard]] int lowcutStep(const FXParams& fx); ///< 0 ... 2
[[nodiscard]] int compStep(const FXParams& fx);   ///< 0 ... 3
[[nodiscard]] int reverbStep(const FXParams& fx); ///< 0 ... 2

[[nodiscard]] QString lowcutSummary(const FXParams& fx);
[[nodiscard]] QString tiltSummary(const FXParams& fx);
[[nodiscard]] QString compSummary(const FXParams& fx);
[[nodiscard]] QString reverbSummary(const FXParams& fx);
/// The amount alone, without the character.
[[nodiscard]] QString reverbText(const FXParams& fx);
[[nodiscard]] QString gainSummary(const FXParams& fx);

/// Whole decibels with their sign.
[[nodiscard]] QString dbLabel(float db);

} // namespace velmora
