// ShortcutsModel.h: the shortcuts' tab of the settings window.
#pragma once

#include "platform/Signal.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace velmora {

class AppSettings;
class ShortcutKeys;

/// Threads: main.
class ShortcutsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the settings window")
    Q_PROPERTY(bool offered READ offered NOTIFY changed)
    Q_PROPERTY(bool used READ used WRITE setUsed NOTIFY changed)
    Q_PROPERTY(bool asking READ asking NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(QVariantList keys READ keys NOTIFY changed)
    Q_PROPERTY(bool pushToTalk READ pushToTalk WRITE setPushToTalk NOTIFY changed)
    Q_PROPERTY(bool pushToTalkOffered READ pushToTalkOffered NOTIFY changed)

public:
    /// Both outlive this object.
    ShortcutsModel(ShortcutKeys& shortcuts, AppSettings& settings, QObject* parent = nullptr);

    /// This desktop has shortcuts.
    [[nodiscard]] bool offered() const;
    [[nodiscard]] bool used() const;
    void setUsed(bool used);
    /// The desktop has yet to answer.
    [[nodiscard]] bool asking() const;
    /// Why they are not used although they were wanted; otherwise empty.
    [[nodiscard]] QString error() const;
    /// Objects with `does` and `trigger`, the key's name; none unless the desktop has them bound.
    [[nodiscard]] QVariantList keys() const;

    [[nodiscard]] bool pushToTalk() const;
    void setPushToTalk(bool on);
    /// A key could open the microphone, or it has to be opened without one.
    [[nodiscard]] bool pushToTalkOffered() const;

Q_SIGNALS:
    void changed();

private:
    ShortcutKeys& shortcuts_;
    AppSettings& settings_;
    Signal::Connection shortcutsConnection_;
    Signal::Connection settingsConnection_;
};

} // namespace velmora
