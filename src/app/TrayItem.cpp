#include "app/TrayItem.h"

#include "engine/AudioEngine.h"
#include "operations/MuteToggle.h"
#include "platform/Appearance.h"
#include "settings/AppSettings.h"

#include <QKeySequence>

namespace velmora {
namespace {

/// GNOME's panel is dark in both appearances, as are the usual bars of compositors that bring none;
/// others follow the desktop's. A guess, for panels that do not colour icons themselves.
QColor panelInk(const Appearance& appearance) {
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const bool isDark = desktop.contains("GNOME") || desktop.contains("sway") ||
                        desktop.contains("Hyprland") || appearance.isDark();
    return isDark ? Qt::white : Qt::black;
}

} // namespace

TrayItem::TrayItem(const Platform& platform,
                   AudioEngine& engine,
                   AppSettings& settings,
                   TrayHost::Desktop desktop,
                   QObject* parent)
    : QObject(parent), platform_(platform), engine_(engine), settings_(settings), host_(desktop),
      open_(addCommand({}, &TrayItem::openRequested)),
      openSettings_(addCommand(Qt::CTRL | Qt::Key_Comma, &TrayItem::settingsRequested)),
      quit_(addCommand(Qt::CTRL | Qt::Key_Q, &TrayItem::quitRequested)),
      settingsConnection_(settings.changed().connect([this] { relabel(); })),
      engineConnection_(engine.changedBesidesLevels().connect([this] { followEngine(); })) {
    relabel();
    connect(&host_, &TrayHost::changed, this, &TrayItem::appear);
    platform.appearance.onChange([guard = std::weak_ptr(self_)] {
        if (const auto self = guard.lock()) {
            (*self)->repaint();
        }
    });
}

TrayItem::~TrayItem() = default;

/// Separated from the command before it.
QAction& TrayItem::addCommand(const QKeySequence& shortcut, void (TrayItem::*request)()) {
    if (!menu_.isEmpty()) {
        menu_.addSeparator();
    }
    QAction& command = *menu_.addAction(QString{});
    command.setShortcut(shortcut); // only shown here: the windows have them
    connect(&command, &QAction::triggered, this, request);
    return command;
}

void TrayItem::relabel() {
    const auto label = [this](QAction& command, const char* french) {
        command.setText(QString::fromStdString(settings_.t(french)));
    };
    label(open_, "Ouvrir Velmora");
    label(openSettings_, "Réglages…");
    label(quit_, "Quitter Velmora");
    told_.reset();
    followEngine();
}

void TrayItem::followEngine() {
    const auto reduction = engine_.audience().reduction();
    const Told now{.isRunning = engine_.isRunning(),
                   .isMuted =
                       isMutedGain(engine_.streamVolume()) || (reduction && reduction->isMuted)};
    if (told_ == now) {
        return;
    }
    told_ = now;
    tip_ = tip(now);
    if (icon_) {
        icon_->setToolTip(tip_);
    }
}

/// What is worth knowing without opening the window.
QString TrayItem::tip(const Told& state) const {
    std::string words =
        "Velmora — " + settings_.t(state.isRunning ? "mix en marche" : "mix arrêté");
    if (state.isMuted) {
        words += ", " + settings_.t("micro coupé");
    }
    return QString::fromStdString(words);
}

void TrayItem::appear() {
    if (icon_ || !host_.isAvailable()) {
        return; // Qt itself follows a panel that it has seen once
    }
    takesNames_ = host_.isStatusNotifier();
    icon_ = std::make_unique<QSystemTrayIcon>();
    icon_->setToolTip(tip_);
    icon_->setContextMenu(&menu_);
    connect(icon_.get(),
            &QSystemTrayIcon::activated,
            this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    Q_EMIT openRequested();
                }
            });
    follower_.emplace(engine_, platform_.mainQueue, [this](TrayGlyph glyph) { show(glyph); });
    icon_->show();
}

void TrayItem::show(TrayGlyph glyph) {
    glyph_ = glyph;
    repaint();
}

void TrayItem::repaint() {
    if (!icon_) {
        return;
    }
    const QString name = glyphName(glyph_);
    icon_->setIcon(takesNames_ && QIcon::hasThemeIcon(name)
                       ? QIcon::fromTheme(name)
                       : paintedGlyph(glyph_, panelInk(platform_.appearance)));
}

} // namespace velmora
