// The folders of src/ and what each may include. A new folder is one more line, unless it is a part
// of one that is here.
#include "house/IncludeRules.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

const Library qt{"Q"};
const Library pipewire{"pipewire/", "spa/"};
const Library sqlite{"sqlite3.h"};
const Library glib{"gio/", "glib"};
const Library json{"nlohmann/"};
const Library xcb{"xcb/"};
const Library busGlue{"mixer1_adaptor.h"}; // made from its description
const Library system{"fcntl.h", "sched.h", "spawn.h", "sys/", "unistd.h"};
const Library threads{"pthread.h"};
const Library processor{"immintrin.h"};
const Library sanitizer{"sanitizer/"};

// From below upwards.
const std::vector<Part> house{
    {"effects", {}, {processor}},
    {"effects/FXParamsJson", {"effects"}, {json}},
    {"engine/realtime", {}, {threads}},

    {"platform"},
    {"platform/simulated", {"platform"}},
    {"platform/sqlite", {"platform"}, {sqlite, system}},
    {"platform/qt", {"platform"}, {qt, sanitizer}},
    {"platform/desktop", {"platform"}, {qt, glib, system}},
    {"platform/pipewire/view", {"platform"}, {json}},
    {"platform/pipewire/daemon", {"platform/pipewire/view"}, {pipewire, system}},
    {"platform/pipewire/node", {"platform/pipewire/daemon"}, {pipewire, processor}},
    {"platform/pipewire/keep", {"platform/pipewire/node"}, {pipewire, system}},
    {"platform/pipewire", {"platform/pipewire/keep"}, {pipewire, system}},

    {"settings", {"platform"}},
    {"engine/AudioSource", {"platform"}},
    {"engine/Sentence", {}},
    {"engine/Problem", {"engine/AudioSource", "engine/Sentence"}},
    {"engine/VelmoraError", {"engine/Problem"}},
    {"capture", {"engine/VelmoraError", "engine/realtime", "effects", "settings"}},
    {"engine", {"capture", "effects/FXParamsJson"}, {json}},
    {"presets", {"engine"}, {json}},
    {"operations", {"presets"}, {json}},
    {"ui/kit", {"settings"}, {qt, xcb}},
    {"ui", {"ui/kit", "operations"}, {qt}},
    {"app",
     {"ui", "platform/desktop", "platform/pipewire", "platform/qt", "platform/sqlite"},
     {qt, glib, xcb, system, busGlue}},
};

TEST(House, NoFileIncludesWhatItsFolderMustNotKnow) {
    for (const std::string& line : forbiddenIncludes(VELMORA_SOURCE_FOLDER, house)) {
        ADD_FAILURE() << line;
    }
}

} // namespace
} // namespace velmora
