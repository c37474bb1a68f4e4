#include "ui/settings/ShortcutsModel.h"

#include "operations/PushToTalk.h"
#include "operations/ShortcutKeys.h"
#include "settings/AppSettings.h"

#include <QVariantMap>

namespace velmora {

using State = GlobalShortcuts::State;

ShortcutsModel::ShortcutsModel(ShortcutKeys& shortcuts, AppSettings& settings, QObject* parent)
    : QObject(parent), shortcuts_(shortcuts), settings_(settings),
      shortcutsConnection_(shortcuts.changed().connect([this] { Q_EMIT changed(); })),
      settingsConnection_(settings.changed().connect([this] { Q_EMIT changed(); })) {
}

bool ShortcutsModel::offered() const {
    return shortcuts_.state() != State::unavailable;
}

bool ShortcutsModel::used() const {
    return shortcuts_.areUsed();
}

void ShortcutsModel::setUsed(bool used) {
    shortcuts_.use(used);
}

bool ShortcutsModel::asking() const {
    return shortcuts_.state() == State::asked;
}

QString ShortcutsModel::error() const {
    switch (shortcuts_.state()) {
    case State::refused:
        return QString::fromStdString(settings_.t("Les raccourcis ont été refusés."));
    case State::failed:
        return QString::fromStdString(settings_.t("Le bureau n'a pas donné de raccourcis."));
    default:
        return {};
    }
}

QVariantList ShortcutsModel::keys() const {
    QVariantList list;
    if (shortcuts_.state() == State::bound) {
        for (const ShortcutKeys::Key& key : shortcuts_.keys()) {
            list.append(QVariantMap{{"does", QString::fromStdString(key.does)},
                                    {"trigger", QString::fromStdString(key.trigger)}});
        }
    }
    return list;
}

bool ShortcutsModel::pushToTalk() const {
    return shortcuts_.pushToTalk().isOn();
}

void ShortcutsModel::setPushToTalk(bool on) {
    if (!on || pushToTalkOffered()) {
        shortcuts_.pushToTalk().setOn(on);
    }
}

bool ShortcutsModel::pushToTalkOffered() const {
    return shortcuts_.state() == State::bound || pushToTalk();
}

} // namespace velmora
