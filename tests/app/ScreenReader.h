// ScreenReader.h: a program's windows, as a screen reader finds them on the accessibility bus.
#pragma once

#include "support/ChildProcess.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <string>
#include <vector>

namespace velmora {

/// One object of a program, on that bus.
struct SpokenObject {
    QString bus;
    QString path;

    [[nodiscard]] bool isThere() const { return !path.isEmpty(); }
};

/// Hears what the keyboard acts on.
class FocusEar : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] const SpokenObject& last() const { return last_; }

public Q_SLOTS:
    void stateChanged(const QDBusMessage& message);

private:
    SpokenObject last_;
};

/// Starts the accessibility bus of a session; a program that starts later is found on it.
///
/// Threads: main.
class ScreenReader {
public:
    /// @param environment  the session's, with a display
    explicit ScreenReader(const support::Environment& environment);
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    /// The window of this title that is shown, in whatever program; nothing when there is none.
    [[nodiscard]] SpokenObject window(const QString& title);
    /// What is called so in `root` and shown; nothing when there is none.
    [[nodiscard]] SpokenObject find(const SpokenObject& root, const QString& name);

    /// The menu that the keyboard is in; nothing when it is in none. It is heard of by its focus
    /// only: Qt lists no pop-up among a program's windows.
    [[nodiscard]] SpokenObject menu();

    /// What is heard of everything that is shown, one object in a line: role, name, what is added
    /// to it, states, value, text to edit. Children stand two further to the right.
    [[nodiscard]] std::string tree(const SpokenObject& root);

    /// Acts as the screen reader's user asks; false where it is not offered.
    bool press(const SpokenObject& object);
    bool select(const SpokenObject& line, int start, int end);
    [[nodiscard]] std::string selectedText(const SpokenObject& line);
    [[nodiscard]] std::string text(const SpokenObject& line);

private:
    [[nodiscard]] QVariant
    property(const SpokenObject& of, const char* interface, const char* name);
    QVariant ask(const SpokenObject& of,
                 const char* interface,
                 const char* method,
                 const QVariantList& = {});
    [[nodiscard]] std::vector<SpokenObject> children(const SpokenObject& of);
    /// What only holds others together, as newer Qt does with each line of a list, is passed over.
    [[nodiscard]] std::vector<SpokenObject> childrenShown(const SpokenObject& of);
    [[nodiscard]] bool saysNothing(const SpokenObject& object);
    [[nodiscard]] quint64 states(const SpokenObject& of);
    [[nodiscard]] bool has(const SpokenObject& object, const char* interface);
    [[nodiscard]] std::string line(const SpokenObject& object);

    support::ChildProcess launcher_;
    QDBusConnection bus_;
    FocusEar ear_;
};

} // namespace velmora
