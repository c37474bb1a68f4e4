// Report.h: the demonstration's tables, and whether everything was found as predicted.
#pragma once

#include "engine/SourceStatistics.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace velmora::demo {

/// What was found of one tone in one recording. Units: Hz, dB (0 dB = amplitude 1).
struct Finding {
    std::string recording;
    std::string source;
    double hz{};
    double predictedDb{}; ///< `absent` when the tone must not be there
    double foundDb{};

    static constexpr double absent = -60; ///< nothing louder, a click of another tone included
    static constexpr double toleranceDb = 0.5;

    [[nodiscard]] bool isAsPredicted() const;
};

/// How often each tone was interrupted, with and without the mixer in between.
struct Continuity {
    std::string source;
    int directBreaks{};
    int mixedBreaks{};
};

/// One ring when the mix had settled, and at its end.
struct RingUse {
    std::string source;
    std::string output;
    RingStatistics atStart;
    RingStatistics atEnd;
};

[[nodiscard]] bool allAsPredicted(const std::vector<Finding>& findings);

void print(std::ostream& out, const std::vector<Finding>& findings);
void print(std::ostream& out, const std::vector<RingUse>& rings);
void print(std::ostream& out, const std::vector<Continuity>& continuity);

} // namespace velmora::demo
