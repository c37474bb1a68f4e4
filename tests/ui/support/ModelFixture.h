// ModelFixture.h: the core behind the control window, on a machine with two applications.
#pragma once

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "operations/ShortcutKeys.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QEvent>
#include <QString>
#include <gtest/gtest.h>
#include <ostream>

/// Makes failed expectations readable.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace velmora {

class ModelFixture : public testing::Test {
protected:
    ModelFixture() {
        machine.startApplication(4711, "Player", "org.player");
        machine.startApplication(4712, "Browser", "org.browser");
        machine.applications.setIcon("org.player", "player icon");
    }

    /// Deletes what was left for later.
    static void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID mic = machine.addVirtualMic();
    const AudioSource player = AppSource{4711, "Player", "org.player"};
    const AudioSource browser = AppSource{4712, "Browser", "org.browser"};
    AudioEngine engine{machine.platform()};
    SourceManager sources{machine.platform()};
    AppSettings settings{machine.platform()};
    PresetStore presets{machine.defaults};
    PresetRecall recall{machine.platform(), engine};
    PushToTalk talk{engine};
    ShortcutKeys keys{{.platform = machine.platform(),
                       .engine = engine,
                       .sources = sources,
                       .presets = presets,
                       .recall = recall,
                       .settings = settings,
                       .talk = talk}};
    const Problem radioMissing{.kind = Problem::Kind::notFound, .subject = "Radio"};
};

} // namespace velmora
