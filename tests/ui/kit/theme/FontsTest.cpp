#include "ui/kit/theme/Fonts.h"

#include <QFont>
#include <QFontInfo>
#include <QFontMetrics>
#include <gtest/gtest.h>

namespace velmora {

namespace {

QFont font(const char* family, int weight) {
    QFont wanted(QString::fromLatin1(family), 20);
    wanted.setWeight(static_cast<QFont::Weight>(weight));
    return wanted;
}

TEST(Fonts, BringTheInterfacesFamilyInThreeWeights) {
    loadFonts();
    for (const int weight : {400, 600, 700}) {
        const QFontInfo found(font("Albert Sans", weight));
        EXPECT_EQ(found.family(), "Albert Sans");
        EXPECT_EQ(found.weight(), weight);
    }
}

TEST(Fonts, BringTheWordmarksFamily) {
    loadFonts();
    const QFontInfo found(font("Bricolage Grotesque", 800));
    EXPECT_EQ(found.family(), "Bricolage Grotesque");
    EXPECT_EQ(found.weight(), 800);
}

TEST(Fonts, HaveEverySignOfTheReadOuts) {
    loadFonts();
    const QFontMetrics metrics(font("Albert Sans", 400));
    for (const char16_t sign : {u'\u2212', u'\u221E', u'\u2014', u'\u2026', u'\u00E9'}) {
        EXPECT_TRUE(metrics.inFont(sign)) << std::hex << static_cast<int>(sign);
    }
}

} // namespace

} // namespace velmora
