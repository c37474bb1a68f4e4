#include "ui/kit/theme/GlyphProvider.h"
#include "ui/support/QmlTest.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace velmora {

namespace {

/// What the sources give as a `symbol`, and as the `name` of a Symbol: the other names that things
/// have begin with a capital letter or are looked up.
QSet<QString> symbolsNamedIn(const QString& folder) {
    static const QRegularExpression property(
        QStringLiteral("\\b(?:symbol|name)\\b *[:=] *([^;\\n]*)"));
    static const QRegularExpression word(QStringLiteral("\"([a-z]+(?:\\.[a-z0-9]+)*)\""));
    QSet<QString> names;
    QDirIterator files(folder, {"*.qml", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (auto value = property.globalMatch(text); value.hasNext();) {
            const QString given = value.next().captured(1);
            for (auto found = word.globalMatch(given); found.hasNext();) {
                names.insert(found.next().captured(1));
            }
        }
    }
    return names;
}

TEST(Symbols, EveryNameInTheInterfacesSourcesHasADrawing) {
    const QSet<QString> names = symbolsNamedIn(QStringLiteral(UI_SOURCES));
    EXPECT_TRUE(names.contains("chevron.down"));
    for (const QString& name : names) {
        EXPECT_TRUE(QFile::exists(glyphFile(name))) << name.toStdString();
    }
}

TEST(Symbols, EveryNameAnyPlatformKnowsThemByHasADrawing) {
    for (const char* name : {"waveform",
                             "mic",
                             "speaker.slash.fill",
                             "speaker.wave.2",
                             "headphones",
                             "dot.radiowaves.left.and.right",
                             "moon.fill",
                             "sun.max.fill",
                             "checkmark",
                             "chevron.right",
                             "chevron.down",
                             "xmark",
                             "gearshape",
                             "slider.vertical.3"}) {
        EXPECT_FALSE(drawGlyph(name, Qt::black, 24).isNull()) << name;
    }
}

TEST(Symbols, AnUnknownNameDrawsNothing) {
    EXPECT_TRUE(drawGlyph("no.such.symbol", Qt::black, 24).isNull());
}

/// How many pixels of the drawing have the colour in full; -1 when it is cut by its square.
int coveredPixels(const QImage& picture, const QColor& color) {
    const int last = picture.width() - 1;
    int covered = 0;
    for (int y = 0; y <= last; ++y) {
        for (int x = 0; x <= last; ++x) {
            const QColor pixel = picture.pixelColor(x, y);
            if (pixel.alpha() > 0 && (x == 0 || y == 0 || x == last || y == last)) {
                return -1;
            }
            covered += pixel == color ? 1 : 0;
        }
    }
    return covered;
}

TEST(Symbols, EveryDrawingStaysInsideItsSquareInTheAskedColour) {
    const QColor coral(255, 106, 85);
    QDirIterator drawings(":/qt/qml/Velmora/Kit/symbols");
    int seen = 0;
    while (drawings.hasNext()) {
        drawings.next();
        const QString name = drawings.fileInfo().completeBaseName();
        if (name != "circle.fill") { // a dot is as large as its square
            const QImage picture = drawGlyph(name, coral, 48);
            EXPECT_GT(coveredPixels(picture, coral), 48) << name.toStdString(); // a stroke across
            ++seen;
        }
    }
    EXPECT_GE(seen, 19);
}

TEST(Symbols, AHalfTransparentColourStaysHalfTransparent) {
    const QImage picture = drawGlyph("moon.fill", QColor(0, 0, 0, 102), 48);
    EXPECT_EQ(picture.pixelColor(16, 30).alpha(), 102);
}

TEST(Symbols, AreDrawnAtTheAskedPixels) {
    GlyphProvider provider;
    QSize told;
    const QImage picture = provider.requestImage("mic?0e7f8c", &told, QSize(40, 40));
    EXPECT_EQ(picture.size(), QSize(40, 40));
    EXPECT_EQ(told, QSize(40, 40));
    EXPECT_EQ(provider.requestImage("mic?0e7f8c", &told, {}).size(), QSize(24, 24));
}

class SymbolItem : public QmlTest {};

TEST_F(SymbolItem, TakesItsColourOnTheScreen) {
    auto& item = show("Symbol { name: \"moon.fill\"; color: \"#FF6A55\"; size: 48 }");
    EXPECT_EQ(colorAt(item, {16, 30}), QColor(255, 106, 85));
}

TEST_F(SymbolItem, FollowsTheAppearance) {
    settings.setAppearance("light");
    auto& item = show("Symbol { name: \"moon.fill\"; size: 48 }");
    EXPECT_EQ(colorAt(item, {16, 30}), QColor(0x14, 0x33, 0x3F));
    settings.setAppearance("dark");
    EXPECT_EQ(colorAt(item, {16, 30}), QColor(0xF2, 0xE7, 0xCF));
}

TEST_F(SymbolItem, IsDrawnWithAsManyPixelsAsTheScreenHas) {
    auto& item = show("Symbol { name: \"mic\"; size: 20 }");
    // A thin stroke's straight edge blurs when a picture is stretched from fewer pixels. The stem
    // of the microphone, 1.75 of 24 points wide, must reach the full colour at every scale factor.
    const double scale = window().effectiveDevicePixelRatio();
    const QImage picture = grab();
    int darkest = 255;
    for (int x = 0; x < int(20 * scale); ++x) {
        darkest = std::min(darkest, picture.pixelColor(x, int(16.2 * scale)).red());
    }
    EXPECT_LT(darkest, 110) << item.width();
}

} // namespace

} // namespace velmora
