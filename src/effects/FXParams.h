// FXParams.h: one source's effect settings, and their JSON form.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora {

/// What the user has set for one source. A plain value; its default means that no effect runs.
///
/// Integers are not validated: what lies beyond the last step acts as the last step, what lies
/// below the first as the first.
struct FXParams {
    std::int64_t lowcut{0};     ///< 0 = off, 1 = 75 Hz, 2 and above = 150 Hz
    float tilt{0};              ///< -1 … +1, positive = brighter; off up to a magnitude of 0.01
    std::int64_t comp{0};       ///< compressor: 0 = off, 1, 2, 3 and above = stronger and stronger
    bool autoGain{true};        ///< level riding; when off, `manualDB` applies
    float manualDB{0};          ///< dB
    std::int64_t reverbChar{0}; ///< 0 = Studio, 1 = Plate, 2 = Hall
    float reverbMix{0};         ///< 0 … 1; off up to 0.005
    bool plosive{false};        ///< plosive guard
    bool denoise{false};        ///< noise reduction

    /// Every field exactly at its default. Deliberate: a field too small to be heard (a tilt of
    /// 0.005) and `autoGain` off with 0 dB are not neutral.
    [[nodiscard]] bool isNeutral() const;

    /// Field by field; a field that is not a number makes a value unequal to itself.
    bool operator==(const FXParams&) const = default;
};

/// Effect settings that cannot be written as JSON, or a text that holds none.
class FXParamsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One JSON object with all nine keys, in declaration order.
/// Errors: throws `FXParamsError` when a number is not finite; JSON has no such number.
[[nodiscard]] std::string encodeFXParams(const FXParams& params);

/// Reads one JSON object. A missing key or a null gives the field's default; unknown keys are
/// ignored; a whole number may be written as 2 or 2.0.
/// Errors: throws `FXParamsError` on invalid JSON, anything but an object, or a wrong kind.
[[nodiscard]] FXParams decodeFXParams(std::string_view json);

} // namespace velmora
