#include "ui/kit/theme/Fonts.h"

#include <QFontDatabase>
#include <QString>
#include <QtDebug>

#include <array>

namespace velmora {

namespace {

constexpr std::array files{
    "AlbertSans-Regular", "AlbertSans-SemiBold", "AlbertSans-Bold", "BricolageGrotesque-ExtraBold"};

bool loadAll() {
    bool complete = true;
    for (const char* file : files) {
        const QString path =
            QStringLiteral(":/qt/qml/Velmora/Kit/fonts/%1.ttf").arg(QLatin1String(file));
        if (QFontDatabase::addApplicationFont(path) < 0) {
            qWarning("The font %s could not be loaded.", file);
            complete = false;
        }
    }
    return complete;
}

} // namespace

void loadFonts() {
    [[maybe_unused]] static const bool complete = loadAll();
}

} // namespace velmora
