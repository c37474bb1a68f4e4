// Scene.h: what the demonstration plays and how it is mixed.
#pragma once

#include "effects/FXParams.h"
#include "support/ToneAnalysis.h"

#include <string>

namespace velmora::demo {

/// One source of the demonstration: what it plays and what the mix makes of it.
struct SceneSource {
    std::string what; ///< for the tables
    support::Tone tone;
    double gainDb{};
    FXParams fx;
    bool directMuted{};
};

/// No two tones may be multiples of 375 Hz or close to each other: a lost block of 128 frames
/// shifts a tone by a whole number of periods only there, and would stay unseen.
struct Scene {
    SceneSource music{.what = "native app",
                      .tone = {.hz = {440, 554}, .db = -20},
                      .gainDb = -6,
                      .fx = {.lowcut = 2,
                             .tilt = 0.6F,
                             .autoGain = false,
                             .manualDB = 2,
                             .reverbChar = 1,
                             .reverbMix = 0.35F},
                      .directMuted = true};
    SceneSource call{.what = "Pulse player",
                     .tone = {.hz = {1000, 1270}, .db = -26},
                     .gainDb = 4,
                     .fx = {.comp = 2}, // with the automatic level
                     .directMuted = false};
    SceneSource instrument{.what = "interface 1-2",
                           .tone = {.hz = {2300, 3100}, .db = -24},
                           .gainDb = -3,
                           .fx = {},
                           .directMuted = false};

    double monitoringDb = -9; ///< volume of the monitoring output
};

} // namespace velmora::demo
