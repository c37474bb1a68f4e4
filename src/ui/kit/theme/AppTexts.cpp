#include "ui/kit/theme/AppTexts.h"

#include "settings/AppSettings.h"
#include "ui/kit/Kit.h"

namespace velmora {

AppTexts::AppTexts(AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings), language_(QString::fromStdString(settings.language())),
      connection_(settings.changed().connect([this] { follow(); })) {
}

AppTexts* AppTexts::create(QQmlEngine* engine, QJSEngine*) {
    return kitOf<AppTexts>(engine);
}

QString AppTexts::lookup(const QString&, const QString& french) const {
    return QString::fromStdString(settings_.t(french.toStdString()));
}

void AppTexts::follow() {
    const QString language = QString::fromStdString(settings_.language());
    if (language == language_) {
        return;
    }
    language_ = language;
    Q_EMIT languageChanged();
}

} // namespace velmora
