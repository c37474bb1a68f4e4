// TrayItem.h: the item in the desktop's panel, with its menu.
#pragma once

#include "app/GlyphFollower.h"
#include "app/GlyphImages.h"
#include "app/TrayHost.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>

namespace velmora {

class AppSettings;
class AudioEngine;

/// The icon is a level meter while audio runs. The item appears with the first panel that takes
/// one, however late that comes.
///
/// Threads: main; needs a QApplication.
class TrayItem : public QObject {
    Q_OBJECT

public:
    /// All of them outlive this object.
    TrayItem(const Platform& platform,
             AudioEngine& engine,
             AppSettings& settings,
             TrayHost::Desktop desktop,
             QObject* parent = nullptr);
    ~TrayItem() override;

    /// The user can reach the program by its item.
    [[nodiscard]] bool isReachable() const { return icon_ && host_.isAvailable(); }

Q_SIGNALS:
    void openRequested();
    void settingsRequested();
    void quitRequested();

private:
    struct Told {
        bool isRunning{};
        bool isMuted{}; ///< what others record

        bool operator==(const Told&) const = default;
    };
    QAction& addCommand(const QKeySequence& shortcut, void (TrayItem::*request)());
    void relabel();
    void followEngine();
    [[nodiscard]] QString tip(const Told& state) const;
    void appear();
    void show(TrayGlyph glyph);
    void repaint();

    Platform platform_;
    AudioEngine& engine_;
    AppSettings& settings_;
    TrayHost host_;
    QMenu menu_;
    QAction& open_;
    QAction& openSettings_;
    QAction& quit_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    bool takesNames_ = false; // the panel looks icons up by their names
    TrayGlyph glyph_;
    std::optional<GlyphFollower> follower_;
    std::optional<Told> told_; // by the tip
    QString tip_;
    Signal::Connection settingsConnection_;
    Signal::Connection engineConnection_;
    /// The desktop's listener, which outlives this object, looks here first.
    std::shared_ptr<TrayItem*> self_ = std::make_shared<TrayItem*>(this);
};

} // namespace velmora
