// AppTexts.h: the language and the text lookup for QML.
#pragma once

#include "platform/Signal.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace velmora {

class AppSettings;

/// Threads: main. QML calls `I18n.t` instead, whose bindings follow the language.
class AppTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString language READ language NOTIFY languageChanged)

public:
    /// `settings` outlives this object.
    explicit AppTexts(AppSettings& settings, QObject* parent = nullptr);
    /// The object that `installKit` gave to this engine.
    static AppTexts* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] QString language() const { return language_; }
    /// `french` in the user's language. `language` is there to be read by the caller's binding.
    Q_INVOKABLE [[nodiscard]] QString lookup(const QString& language, const QString& french) const;

Q_SIGNALS:
    void languageChanged();

private:
    void follow();

    AppSettings& settings_;
    QString language_;
    Signal::Connection connection_;
};

} // namespace velmora
