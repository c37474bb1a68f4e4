// UndoModel.h: what was just taken away, and can still be brought back.
#pragma once

#include "platform/MainQueue.h"
#include "platform/Signal.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class AppSettings;

/// One edit that can be undone.
struct UndoOffer {
    enum class Kind { presets, source };

    Kind kind{};
    std::string_view french{}; ///< a text of the table, in which {name} stands for `name`
    std::string name{};        ///< as given, in every language
    std::function<void()> undo{};
    std::function<bool()> isMoot{}; ///< may be empty: there is nothing left to undo
};

/// The bar that offers to undo the last edit. Each undo uncovers the edit before; all offers end
/// together when nothing has happened for `shownFor`.
///
/// Threads: main.
class UndoModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the control window")
    Q_PROPERTY(bool offered READ offered NOTIFY offeredChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(bool held READ held WRITE setHeld NOTIFY heldChanged)

public:
    static constexpr std::chrono::seconds shownFor{8};

    /// Both outlive this object.
    UndoModel(MainQueue& queue, AppSettings& settings, QObject* parent = nullptr);

    void offer(UndoOffer offer);
    /// Takes back the offers of this kind.
    void withdraw(UndoOffer::Kind kind);
    /// Takes back what has become moot.
    void withdrawMoot();

    [[nodiscard]] bool offered() const { return !offers_.empty(); }
    /// What happened, in the user's language.
    [[nodiscard]] const QString& text() const { return text_; }

    /// Somebody is about to answer, or cannot reach the bar now: the time begins again afterwards.
    [[nodiscard]] bool held() const { return held_; }
    void setHeld(bool held);

    Q_INVOKABLE void undo();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void offeredChanged();
    void textChanged();
    void heldChanged();

private:
    void refresh();
    [[nodiscard]] QString latestText() const;

    MainQueue& queue_;
    AppSettings& settings_;
    std::vector<UndoOffer> offers_; // the latest last
    bool held_ = false;
    std::unique_ptr<MainQueue::Timer> ending_; // runs while there is an offer that is not held
    // As last shown.
    bool offered_ = false;
    QString text_;
    Signal::Connection settingsConnection_;
};

} // namespace velmora
