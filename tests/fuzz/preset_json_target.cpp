// Presets as JSON: any text is read or refused, and what was read survives being written. The same
// for the file that people carry, and for a list of which only some can be read.
#include "Require.h"
#include "platform/simulated/SimulatedDefaultsStore.h"
#include "presets/PresetFile.h"
#include "presets/PresetJson.h"
#include "presets/PresetStore.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace velmora {
namespace {

void keep(std::string_view text) {
    const auto presets = decodePresets(text);
    if (presets) {
        const auto written = encodePresets(*presets);
        require(written.has_value(), "whatever was read can be written");
        require(decodePresets(*written) == presets, "presets survive a round trip");
    }
}

void carry(std::string_view text) {
    const auto presets = decodePresetFile(text);
    if (presets) {
        const auto written = encodePresetFile(*presets);
        require(written.has_value(), "whatever was carried here can be carried on");
        require(decodePresetFile(*written) == presets, "carried presets survive a round trip");
    }
}

void setAsideAndBringBack(std::string_view text) {
    SimulatedDefaultsStore defaults;
    defaults.set("presets", Bytes(text.begin(), text.end()));
    PresetStore store(defaults);
    const auto count = store.presets().size() + store.setAside().readable().size();
    store.bringBackSetAside();
    require(store.presets().size() <= count, "nothing comes back twice");
    require(store.setAside().readable().empty(), "what can be read is back");
    require(PresetStore(defaults).presets() == store.presets(), "what came back is kept");
}

} // namespace
} // namespace velmora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    velmora::keep(text);
    velmora::carry(text);
    velmora::setAsideAndBringBack(text);
    return 0;
}
