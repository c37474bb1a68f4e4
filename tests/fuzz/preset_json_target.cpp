// Presets as JSON: any text is read or refused, and what was read survives being written.
#include "Require.h"
#include "presets/PresetJson.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const auto presets = decodePresets(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!presets) {
        return 0;
    }
    const auto text = encodePresets(*presets);
    require(text.has_value(), "whatever was read can be written");
    require(decodePresets(*text) == presets, "presets survive a round trip");
    return 0;
}
