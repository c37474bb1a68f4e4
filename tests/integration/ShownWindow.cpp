#include "ShownWindow.h"

#include "support/Wait.h"
#include "ui/Ui.h"
#include "ui/kit/Kit.h"
#include "ui/support/ItemSearch.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QUrl>
#include <gtest/gtest.h>
#include <stdexcept>
#include <utility>
#include <vector>

namespace velmora {

namespace {

constexpr double tallest = 1200; // points: nothing has to be scrolled
constexpr double thumbWidth = 16;
constexpr double lowestDb = -60;
constexpr double highestDb = 6;

/// What a screen reader could say of everything that is shown, a line each.
std::string namesIn(QQuickItem& part) {
    std::string names;
    for (QQuickItem* item : visibleItems(part, [](QQuickItem&) { return true; })) {
        const auto* spoken = QAccessible::queryAccessibleInterface(item);
        const QString name = spoken != nullptr ? spoken->text(QAccessible::Name) : QString();
        names += name.isEmpty() ? "" : name.toStdString() + "\n";
    }
    return names;
}

} // namespace

ShownWindow::ShownWindow(const std::filesystem::path& settingsFile) : machine_(settingsFile) {
    installKit(qml_, settings_);
    installUi(qml_);
    auto made = makeWindow(qml_, QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"), model_);
    if (!made) {
        throw std::runtime_error(made.error());
    }
    window_ = std::move(*made);
    pointer_.emplace(*window_);
    window_->setProperty("tallest", tallest);
    window_->show();
    window_->requestActivate();
    EXPECT_TRUE(support::waitUntil([&] { return window_->isExposed() && window_->isActive(); }));
}

QQuickItem& ShownWindow::find(const QString& name, QQuickItem* within) {
    QQuickItem* found = nullptr;
    const bool appeared = support::waitUntil([&] {
        return (found = findItem(within != nullptr ? *within : content(), name)) != nullptr;
    });
    EXPECT_TRUE(appeared) << "nothing visible is called \"" << name.toStdString() << "\" among\n"
                          << namesIn(within != nullptr ? *within : content());
    return appeared ? *found : missing_;
}

void ShownWindow::click(const QString& name, QQuickItem* within) {
    pointer_->pause();
    pointer_->click(find(name, within));
    QCoreApplication::processEvents();
}

void ShownWindow::choose(const QString& entry) {
    std::vector<QQuickItem*> menus;
    EXPECT_TRUE(support::waitUntil([&] {
        menus = visibleItems(*window_, [](QQuickItem& item) {
            const auto* spoken = QAccessible::queryAccessibleInterface(&item);
            return spoken != nullptr && spoken->role() == QAccessible::PopupMenu;
        });
        return !menus.empty();
    })) << "no menu is open";
    click(entry, menus.empty() ? &missing_ : menus.front());
}

void ShownWindow::dragFader(QQuickItem& part, double db) {
    const QQuickItem& fader = *find(QStringLiteral("thumb"), &part).parentItem();
    const double position = (db - lowestDb) / (highestDb - lowestDb);
    const double y = fader.height() / 2;
    // A strip that has just come takes its place first, and the menu it came from goes.
    QPointF place;
    EXPECT_TRUE(support::waitUntil([&] {
        QCoreApplication::processEvents();
        const QPointF now = fader.mapToScene({});
        return window_->isActive() && std::exchange(place, now) == now && fader.width() > 0;
    }));
    pointer_->pause();
    pointer_->press(fader, {fader.width() / 3, y});
    pointer_->moveTo(fader, {fader.width() / 2, y});
    pointer_->moveTo(fader, {thumbWidth / 2 + position * (fader.width() - thumbWidth), y});
    pointer_->release();
    QCoreApplication::processEvents();
}

void ShownWindow::type(const QString& text) {
    for (const QChar letter : text) {
        for (const auto event : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent key(event, Qt::Key(letter.toUpper().unicode()), {}, letter);
            QCoreApplication::sendEvent(window_.get(), &key);
        }
    }
}

} // namespace velmora
