// ScalarChain.h: the effects written down frame by frame, as plainly as they can be said.
#pragma once

#include "effects/FXParams.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora {

/// What the effects chain must equal bit for bit, and what its speed is measured against. Shares
/// no signal code with it. One thread.
class ScalarChain {
public:
    explicit ScalarChain(const FXParams& params = {}) : pending_(params) {}

    void setParams(const FXParams& params);
    void setSampleRate(double hz);
    void setBypass(bool isBypassed);
    void process(float* interleaved, std::int64_t count);

private:
    struct Section {
        float b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
        float x1 = 0, x2 = 0, y1 = 0, y2 = 0;

        void set(double nb0, double nb1, double nb2, double na0, double na1, double na2);
        void setHighPass(double freq, double rate);
        void setLowPass(double freq, double rate);
        void setLowShelf(double freq, double gainDb, double rate);
        void setHighShelf(double freq, double gainDb, double rate);
        void clear();
        float run(float x);
    };

    struct Room {
        std::array<std::vector<float>, 6> lines; // four combs, two allpasses
        std::array<std::size_t, 6> at{};
        std::array<float, 4> stores{};

        void build(double rate, int offset);
        void clear();
        float run(float x, float feedback, float damp);
    };

    void refresh();
    void reset();
    [[nodiscard]] float coefficient(double seconds) const;
    void runPlosiveGuard(float& left, float& right);
    void runNoiseReduction(float& left, float& right);
    void runCompressor(float& left, float& right);
    void runLevel(float& left, float& right);

    FXParams pending_;
    double pendingRate_ = 48000.0;
    bool pendingBypass_ = false;
    bool dirty_ = true;

    FXParams params_;
    double rate_ = 48000.0;
    bool bypass_ = false;

    Section highPassL_, highPassR_, lowShelfL_, lowShelfR_, highShelfL_, highShelfR_;
    Section plosiveL_, plosiveR_, lowBandL_, lowBandR_, highBandL_, highBandR_;
    bool highPassOn_ = false, tiltOn_ = false, reverbOn_ = false;
    float compEnv_ = 0, compAttack_ = 0, compRelease_ = 0;
    float compThreshold_ = 0, compSlope_ = 0, compMakeup_ = 1;
    float meanSquare_ = 0, meanSquareCoefficient_ = 0;
    float levelGain_ = 1, levelSlew_ = 0;
    Room roomL_, roomR_;
    bool roomsBuilt_ = false;
    float feedback_ = 0, damp_ = 0, wet_ = 0;
    float plosiveLow_ = 0, plosiveBroad_ = 0, plosiveGain_ = 1;
    float plosiveAttack_ = 0, plosiveRelease_ = 0;
    std::array<float, 3> bandEnv_{0, 0, 0}, bandFloor_{0.001F, 0.001F, 0.001F}, bandGain_{1, 1, 1};
    float bandAttack_ = 0, bandRelease_ = 0, bandFloorRise_ = 0;
};

} // namespace velmora
