// Tips.h: which control says what it does.
#pragma once

#include <QObject>
#include <QPauseAnimation>
#include <QPointer>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// The control under the pointer, or with the keyboard, is told of after a pause, once, until it is
/// left or used. One at a time in the whole program; TipBubble shows it.
///
/// Threads: main.
class Tips : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QQuickItem* control READ control NOTIFY changed)
    Q_PROPERTY(QString words READ words NOTIFY changed)

public:
    explicit Tips(QObject* parent = nullptr);

    /// Who is told of now; none = null.
    [[nodiscard]] QQuickItem* control() const { return shown_ ? asking_.data() : nullptr; }
    [[nodiscard]] const QString& words() const { return words_; }

    Q_INVOKABLE void offer(QQuickItem* control, const QString& words);
    /// Without a pause.
    Q_INVOKABLE void tell(QQuickItem* control, const QString& words);
    /// Also before anything was shown; whoever does not ask is not heeded.
    Q_INVOKABLE void withdraw(QQuickItem* control);

Q_SIGNALS:
    void changed();

private:
    void show();
    void setShown(bool shown);

    QPointer<QQuickItem> asking_;
    QString words_;
    bool shown_ = false;
    QPauseAnimation pause_;
    QPauseAnimation lifetime_; // what covers its neighbours does not stay for ever
};

} // namespace velmora
