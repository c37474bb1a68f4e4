// FoldedText.h: a text as it is compared with what is typed.
#pragma once

#include <QString>

namespace velmora {

/// Without accents and case.
[[nodiscard]] inline QString foldedText(const QString& text) {
    QString letters = text.normalized(QString::NormalizationForm_D);
    letters.removeIf([](QChar letter) { return letter.category() == QChar::Mark_NonSpacing; });
    return letters.toCaseFolded();
}

} // namespace velmora
