// Stage.h: everything around the mixer in a demonstration: players before it, recorders after it.
#pragma once

#include "Scene.h"

#include "support/ClientPrograms.h"
#include "support/PrivateSession.h"
#include "support/SessionDevices.h"

#include <cstdint>
#include <stdexcept>

namespace velmora::demo {

/// A private session with two players, a fed interface, and recorders wherever the result can be
/// heard. Each player is also recorded on a link of its own, past the mixer.
struct Stage {
    /// Returns when every player is heard.
    /// Errors: throws std::runtime_error when something of it does not come up.
    Stage(const Scene& scene, std::uint32_t quantum)
        : music(session), call(session, scene.call.tone),
          instrument(session, support::interface4.name, {1, 2}, scene.instrument.tone),
          microphone(session, support::microphone),
          speakers(session, support::speakers.name, {1, 2}),
          monitoring(session, support::interface4.name, {3, 4}),
          musicDirect(session, "demo.music", {1, 2}), callDirect(session, "paplay", {1, 2}),
          instrumentDirect(session, support::interface4.name, {1, 2}) {
        session.forceQuantum(quantum);
        music.play(
            "demo.music", scene.music.tone.hz[0], scene.music.tone.hz[1], scene.music.tone.db);
        const bool allPlay = isHeard(musicDirect, scene.music) && isHeard(callDirect, scene.call) &&
                             isHeard(instrumentDirect, scene.instrument) &&
                             isHeard(speakers, scene.music) && isHeard(speakers, scene.call);
        if (!allPlay) {
            throw std::runtime_error("the players are not heard\n" + session.logTails());
        }
    }

    support::PrivateSession session{{.devices = {support::speakers, support::interface4}}};
    support::ToneApp music;    ///< speaks PipeWire's own protocol
    support::PulsePlayer call; ///< speaks the Pulse protocol
    support::Feeder instrument;

    support::PulseRecorder microphone; ///< what a call program receives
    support::Recorder speakers;        ///< the monitor of the default output
    support::Recorder monitoring;      ///< where the second copy of the mix is played
    support::Recorder musicDirect;
    support::Recorder callDirect;
    support::Recorder instrumentDirect;

private:
    /// In every quarter of a second, so that the comparison with later finds the tone whole.
    static bool isHeard(const support::Recording& recording, const SceneSource& source) {
        constexpr double exact = 0.05; // dB
        return recording.hears(0, source.tone.hz[0], source.tone.db, exact) &&
               recording.hears(1, source.tone.hz[1], source.tone.db, exact);
    }
};

} // namespace velmora::demo
