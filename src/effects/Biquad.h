// Biquad.h: the second-order section that every filter of the effects is made of.
#pragma once

#include "effects/SampleMath.h"

namespace velmora {

/// One section, one channel. A plain value; the default passes its input unchanged.
///
/// Formula: y = b0·x + b1·x1 + b2·x2 - a1·y1 - a2·y2 (direct form I), summed in float in exactly
///          this order. Coefficients are computed in double and are already divided by a0.
/// Source:  Audio EQ Cookbook.
/// Threads: one owner; no internal locking.
struct Biquad {
    float b0{1}, b1{0}, b2{0}, a1{0}, a2{0};
    float x1{0}, x2{0}, y1{0}, y2{0};

    /// One sample. A result that is not finite becomes 0 and never enters the feedback.
    /// Real-time: yes.
    float process(float x) noexcept;

    /// Shelves of slope 1. Units: Hz, dB. Real-time: yes (a few transcendental functions).
    static Biquad lowShelf(double freq, double gainDB, double sampleRate);
    static Biquad highShelf(double freq, double gainDB, double sampleRate);
    /// Passes with a Q near 0.7072.
    static Biquad highPass(double freq, double sampleRate);
    static Biquad lowPass(double freq, double sampleRate);
};

inline float Biquad::process(float x) noexcept {
    const float y = finiteOr(b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2, 0.0F);
    x2 = x1;
    x1 = x;
    y2 = y1;
    y1 = y;
    return y;
}

} // namespace velmora
