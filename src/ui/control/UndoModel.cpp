#include "ui/control/UndoModel.h"

#include "settings/AppSettings.h"
#include "ui/control/TakeOver.h"

#include <utility>

namespace velmora {

UndoModel::UndoModel(MainQueue& queue, AppSettings& settings, QObject* parent)
    : QObject(parent), queue_(queue), settings_(settings),
      settingsConnection_(settings.changed().connect([this] {
          if (takeOver(text_, latestText())) {
              Q_EMIT textChanged();
          }
      })) {
}

void UndoModel::offer(UndoOffer offer) {
    offers_.push_back(std::move(offer));
    refresh();
}

void UndoModel::withdraw(UndoOffer::Kind kind) {
    if (std::erase_if(offers_, [kind](const UndoOffer& offer) { return offer.kind == kind; }) > 0) {
        refresh();
    }
}

void UndoModel::withdrawMoot() {
    const auto isMoot = [](const UndoOffer& offer) { return offer.isMoot && offer.isMoot(); };
    if (std::erase_if(offers_, isMoot) > 0) {
        refresh();
    }
}

void UndoModel::setHeld(bool held) {
    if (takeOver(held_, held)) {
        refresh();
        Q_EMIT heldChanged();
    }
}

void UndoModel::undo() {
    if (offers_.empty()) {
        return;
    }
    // The undoing tells observers, which may look at the offers.
    const auto undo = std::move(offers_.back().undo);
    offers_.pop_back();
    undo();
    refresh();
}

void UndoModel::dismiss() {
    offers_.clear();
    refresh();
}

void UndoModel::refresh() {
    ending_ = offers_.empty() || held_ ? nullptr : queue_.after(shownFor, [this] { dismiss(); });
    if (takeOver(text_, latestText())) {
        Q_EMIT textChanged();
    }
    if (takeOver(offered_, offered())) {
        Q_EMIT offeredChanged();
    }
}

QString UndoModel::latestText() const {
    if (offers_.empty()) {
        return {};
    }
    const UndoOffer& latest = offers_.back();
    QString text = QString::fromStdString(settings_.t(latest.french));
    const QString place = QStringLiteral("{name}");
    if (const auto at = text.indexOf(place); at >= 0) {
        text.replace(at, place.size(), QString::fromStdString(latest.name));
    }
    return text;
}

} // namespace velmora
