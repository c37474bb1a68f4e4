// Effect settings as JSON: any text is read or refused, and what was read survives being written.
#include "Require.h"
#include "effects/FXParams.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    try {
        const FXParams params =
            decodeFXParams(std::string_view(reinterpret_cast<const char*>(data), size));
        require(decodeFXParams(encodeFXParams(params)) == params, "settings survive a round trip");
    } catch (const FXParamsError&) {
        // refused
    }
    return 0;
}
