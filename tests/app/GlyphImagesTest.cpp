#include "app/GlyphImages.h"

#include "app/MeterGlyph.h"

#include <QByteArray>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;

QImage embedded() {
    const QByteArray text(idleGlyphPng.data(), static_cast<qsizetype>(idleGlyphPng.size()));
    return QImage::fromData(QByteArray::fromBase64(text), "PNG");
}

/// The covered part of a column, in points.
double coverage(const QImage& image, int column, double pixelsPerPoint) {
    double covered = 0;
    for (int y = 0; y < image.height(); ++y) {
        covered += qAlpha(image.pixel(column, y)) / 255.0;
    }
    return covered / pixelsPerPoint;
}

bool isBlackOnNothing(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) != 0 && (qRed(pixel) | qGreen(pixel) | qBlue(pixel)) != 0) {
                return false;
            }
        }
    }
    return true;
}

bool isEmpty(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                return false;
            }
        }
    }
    return true;
}

TEST(GlyphImages, MeterIsTwentyTwoByFifteenPoints) {
    EXPECT_EQ(meterIcon(0.5F, 1).size(), QSize(22, 15));
    EXPECT_EQ(meterIcon(0.5F, 2).size(), QSize(44, 30));
    EXPECT_TRUE(isBlackOnNothing(meterIcon(0.5F, 2)));
}

TEST(GlyphImages, MeterDrawsEachBarAsHighAsItsGeometry) {
    constexpr double scale = 10;
    for (const float level : {0.0F, 0.1F, 1.0F}) {
        const QImage image = meterIcon(level, scale);
        for (const MeterBar& bar : meterBars(level)) {
            const int middle = static_cast<int>((bar.x + bar.width / 2) * scale);
            EXPECT_NEAR(coverage(image, middle, scale), bar.height, 0.05) << "level " << level;
        }
        EXPECT_EQ(coverage(image, 0, scale), 0);
    }
}

TEST(GlyphImages, EmbeddedPictureIsASixtyByThirtyTwoTemplate) {
    const QImage picture = embedded();

    EXPECT_EQ(picture.size(), QSize(60, 32));
    EXPECT_EQ(picture.format(), QImage::Format_ARGB32); // RGBA, 8 bits each
    EXPECT_TRUE(isBlackOnNothing(picture));
    EXPECT_FALSE(isEmpty(picture));
}

TEST(GlyphImages, EmbeddedPictureIsTheMiddleOfTheSymbolicIcon) {
    QFile file(QStringLiteral(VELMORA_IDLE_ICON));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QSvgRenderer icon(file.readAll().replace("currentColor", "#000"));
    QImage drawn(60, 60, QImage::Format_ARGB32);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    icon.render(&painter);
    painter.end();

    const QImage picture = embedded();
    int different = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int apart =
                std::abs(qAlpha(picture.pixel(x, y)) - qAlpha(drawn.pixel(x, y + 14)));
            different += apart > 24 ? 1 : 0;
        }
    }
    EXPECT_EQ(different, 0);
}

TEST(GlyphImages, IdleIsTwentyEightByFifteenPoints) {
    EXPECT_EQ(idleIcon(1).size(), QSize(28, 15));
    EXPECT_EQ(idleIcon(2).size(), QSize(56, 30));
    EXPECT_TRUE(isBlackOnNothing(idleIcon(2)));
    EXPECT_FALSE(isEmpty(idleIcon(2)));
}

TEST(GlyphImages, ADamagedPictureFallsBackToTheWaveform) {
    const QImage fallback = idleIcon(2, "not base64!");

    EXPECT_EQ(fallback.size(), QSize(56, 30));
    EXPECT_FALSE(isEmpty(fallback));
    EXPECT_NE(fallback, idleIcon(2));
    EXPECT_EQ(fallback, idleIcon(2, "AAAA")); // decodes, but to no picture
    EXPECT_EQ(fallback, idleIcon(2, idleGlyphPng.substr(0, 400)));
}

TEST(GlyphImages, WithoutTheWaveformTheFallbackIsEmpty) {
    const QImage nothing = idleIcon(2, "not base64!", "no such symbol");

    EXPECT_EQ(nothing.size(), QSize(56, 30));
    EXPECT_TRUE(isEmpty(nothing));
}

TEST(GlyphImages, NamesEachStepAndTheMixerAtRest) {
    EXPECT_EQ(glyphName(0), "app.velmora.Velmora-level-00-symbolic");
    EXPECT_EQ(glyphName(16), "app.velmora.Velmora-level-16-symbolic");
    EXPECT_EQ(glyphName(std::nullopt), "app.velmora.Velmora-idle-symbolic");
}

TEST(GlyphImages, PaintsSquaresForPanelsInTheirInk) {
    for (const TrayGlyph glyph : {TrayGlyph(16), TrayGlyph()}) {
        const QIcon icon = paintedGlyph(glyph, Qt::white);

        EXPECT_THAT(icon.availableSizes(), ElementsAre(QSize(22, 22), QSize(44, 44)));
        const QImage large = icon.pixmap(QSize(44, 44), 1.0).toImage();
        EXPECT_FALSE(isEmpty(large));
        EXPECT_EQ(qAlpha(large.pixel(0, 0)), 0);
    }
    // The middle bar stands in the middle, at full height: 15 of 22 points.
    const QImage full = paintedGlyph(16, Qt::white).pixmap(QSize(22, 22), 1.0).toImage();
    EXPECT_EQ(full.pixelColor(11, 11), QColor(Qt::white));
    EXPECT_EQ(full.pixelColor(11, 2).alpha(), 0);
}

} // namespace
} // namespace velmora
