#include "Report.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <ostream>

namespace velmora::demo {
namespace {

constexpr int nameWidth = 24;
constexpr int numberWidth = 12;

/// One line of a table; ends it when destroyed.
class Line {
public:
    explicit Line(std::ostream& out) : out_(out) {}
    ~Line() { out_ << '\n'; }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Line& name(const std::string& text) {
        out_ << std::left << std::setw(nameWidth) << text;
        return *this;
    }
    template <typename Value>
    Line& number(const Value& value, int decimals = 0) {
        out_ << std::right << std::fixed << std::setprecision(decimals) << std::setw(numberWidth)
             << value;
        return *this;
    }

private:
    std::ostream& out_;
};

/// "128..256" in frames: a ring counts floats, two a frame.
std::string backlogFrames(const RingStatistics& ring) {
    return std::to_string(ring.backlogMin / 2) + ".." + std::to_string(ring.backlogMax / 2);
}

} // namespace

bool Finding::isAsPredicted() const {
    return predictedDb <= absent ? foundDb < absent
                                 : std::abs(foundDb - predictedDb) <= toleranceDb;
}

bool allAsPredicted(const std::vector<Finding>& findings) {
    return std::ranges::all_of(findings, &Finding::isAsPredicted);
}

void print(std::ostream& out, const std::vector<Finding>& findings) {
    out << "\nEach tone in the recordings, in dB (0 dB = amplitude 1)\n";
    Line(out)
        .name("recording")
        .name("source")
        .number("Hz")
        .number("predicted")
        .number("found")
        .number("difference");
    for (const Finding& finding : findings) {
        Line line(out);
        line.name(finding.recording).name(finding.source).number(finding.hz);
        if (finding.predictedDb <= Finding::absent) {
            line.number("absent").number(finding.foundDb, 2).number("");
        } else {
            line.number(finding.predictedDb, 2)
                .number(finding.foundDb, 2)
                .number(finding.foundDb - finding.predictedDb, 2);
        }
        line.number(finding.isAsPredicted() ? "ok" : "WRONG");
    }
}

void print(std::ostream& out, const std::vector<RingUse>& rings) {
    out << "\nThe mixer's rings, without the first two seconds; backlog in frames\n";
    Line(out).name("source").name("towards").number("underruns").number("trims").number("backlog");
    for (const RingUse& ring : rings) {
        Line(out)
            .name(ring.source)
            .name(ring.output)
            .number(ring.atEnd.underruns - ring.atStart.underruns)
            .number(ring.atEnd.trims - ring.atStart.trims)
            .number(backlogFrames(ring.atEnd));
    }
}

void print(std::ostream& out, const std::vector<Continuity>& continuity) {
    out << "\nInterruptions of each tone in the same time\n";
    Line(out).name("source").number("direct link").number("mixed");
    for (const Continuity& line : continuity) {
        Line(out).name(line.source).number(line.directBreaks).number(line.mixedBreaks);
    }
}

} // namespace velmora::demo
