#include "ui/kit/Kit.h"

#include "ui/kit/access/SpokenItem.h"
#include "ui/kit/controls/WheelGesture.h"
#include "ui/kit/theme/AppTexts.h"
#include "ui/kit/theme/Comfort.h"
#include "ui/kit/theme/Fonts.h"
#include "ui/kit/theme/GlyphProvider.h"
#include "ui/kit/theme/ThemeColors.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(Velmora_KitPlugin)

namespace velmora {

namespace {

template <typename T>
void give(QQmlEngine& engine, AppSettings& settings) {
    engine.setProperty(T::staticMetaObject.className(),
                       QVariant::fromValue(new T(settings, &engine)));
}

} // namespace

void installKit(QQmlEngine& engine, AppSettings& settings) {
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    engine.addImageProvider(QStringLiteral("glyph"), new GlyphProvider);
    new WheelGesture(&engine);
    loadFonts();
    installSpokenItems();
    give<AppTexts>(engine, settings);
    give<ThemeColors>(engine, settings);
    give<Comfort>(engine, settings);
}

} // namespace velmora
