#include "ui/kit/controls/Tips.h"

#include <utility>

namespace velmora {

namespace {

constexpr int hesitation = 700;    // ms
constexpr int longestShown = 8000; // ms

} // namespace

Tips::Tips(QObject* parent) : QObject(parent), pause_(hesitation), lifetime_(longestShown) {
    connect(&pause_, &QAbstractAnimation::finished, this, &Tips::show);
    connect(&lifetime_, &QAbstractAnimation::finished, this, [this] { setShown(false); });
}

void Tips::offer(QQuickItem* control, const QString& words) {
    setShown(false);
    asking_ = control;
    words_ = words;
    pause_.stop();
    pause_.start();
}

void Tips::tell(QQuickItem* control, const QString& words) {
    offer(control, words);
    pause_.stop();
    show();
}

void Tips::show() {
    setShown(true);
    lifetime_.start();
}

void Tips::withdraw(QQuickItem* control) {
    if (asking_ == control) {
        pause_.stop();
        setShown(false);
        asking_ = nullptr;
    }
}

void Tips::setShown(bool shown) {
    lifetime_.stop();
    if (std::exchange(shown_, shown) != shown) {
        Q_EMIT changed();
    }
}

} // namespace velmora
