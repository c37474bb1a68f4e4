#include "ui/control/SourceMenu.h"

#include "capture/SourceManager.h"
#include "engine/AudioSource.h"
#include "operations/ChannelChoices.h"
#include "platform/Platform.h"
#include "settings/AppSettings.h"
#include "ui/control/SourceIcons.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace velmora {

namespace {

/// Such a device is nearly always meant whole.
constexpr std::int64_t stereo = 2;

/// Builds the menu's items one after the other.
class Builder {
public:
    Builder(const Platform& platform, const AppSettings& settings, const SourceMenuActions& actions)
        : platform_(platform), settings_(settings), actions_(actions) {}

    [[nodiscard]] QString text(std::string_view french) const {
        return QString::fromStdString(settings_.t(french));
    }

    [[nodiscard]] GumMenuItem header(std::string_view french) const {
        return {.kind = GumMenuItem::Kind::header, .title = text(french)};
    }

    [[nodiscard]] GumMenuItem application(const AudioSource& source, bool isPlaying) const {
        GumMenuItem item = choice(source, QString::fromStdString(source.name()));
        item.icon = applicationIcon(platform_.applications, source.app()->bundleID);
        item.playing = isPlaying;
        return item;
    }

    [[nodiscard]] GumMenuItem device(const InputDeviceInfo& info) const {
        const DeviceSource whole{info.deviceID, info.name};
        GumMenuItem item = choice(whole, QString::fromStdString(info.name));
        item.symbol = deviceSymbol(platform_.devices, info.deviceID);
        if (info.channels > 1) {
            item.actsWithChildren = info.channels == stereo;
            if (!item.actsWithChildren) {
                item.action = nullptr;
            }
            item.children = ranges(info, whole);
            item.checked = std::ranges::any_of(item.children, &GumMenuItem::checked);
        }
        return item;
    }

private:
    [[nodiscard]] GumMenuItem choice(const AudioSource& source, const QString& title) const {
        return {.title = title,
                .checked = actions_.isChosen(source),
                .action = [choose = actions_.choose, source] { choose(source); }};
    }

    [[nodiscard]] std::vector<GumMenuItem> ranges(const InputDeviceInfo& info,
                                                  const DeviceSource& whole) const {
        std::vector<GumMenuItem> items{choice(whole, text("Appareil entier"))};
        for (const ChannelChoice& range : channelChoices(info, settings_)) {
            items.push_back(choice(range.source, QString::fromStdString(range.label)));
        }
        return items;
    }

    const Platform& platform_;
    const AppSettings& settings_;
    const SourceMenuActions& actions_;
};

} // namespace

std::vector<GumMenuItem> sourceMenuItems(const SourceManager& sources,
                                         const Platform& platform,
                                         const AppSettings& settings,
                                         const SourceMenuActions& actions) {
    const Builder build(platform, settings, actions);
    std::vector<GumMenuItem> items{
        {.title = build.text("Choisir une application…"), .action = actions.browse},
        build.header("Applications ouvertes")};
    for (const AudioSource& app : sources.runningApps()) {
        items.push_back(build.application(app, sources.playingPIDs().contains(app.app()->pid)));
    }
    const auto addDevices = [&](bool areVirtual) {
        for (const InputDeviceInfo& info : sources.inputDeviceInfos()) {
            if (info.isVirtual == areVirtual) {
                items.push_back(build.device(info));
            }
        }
    };
    items.push_back(build.header("Entrées physiques"));
    addDevices(false);
    items.push_back(build.header("Entrées virtuelles"));
    addDevices(true);
    return items;
}

} // namespace velmora
