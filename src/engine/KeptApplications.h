// KeptApplications.h: forgets what is kept of applications that have ended.
#pragma once

#include "engine/AudioSource.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmora {

class Applications;
class DefaultsStore;
class EngineSettings;

/// An application's id holds a process number, which is given to a stranger one day. So each id is
/// tied to the birth of its process: what is kept under it goes with that process, and the stranger
/// inherits nothing. Devices are no business of this.
///
/// The ties of what is kept are kept as well: key "sourceBirths", a map of numbers by source id.
///
/// Threads: main.
class KeptApplications {
public:
    /// All outlive this object.
    KeptApplications(const Applications& applications,
                     DefaultsStore& store,
                     EngineSettings& settings);

    /// Ties the source to the process that has its number now, if any. When it was tied to another
    /// one, what is kept of that is forgotten, and true is returned.
    bool meet(const AudioSource& source);

    /// The process that the source is tied to has ended, and its number is another's.
    [[nodiscard]] bool isAnothers(const AudioSource& source) const;

    /// To be called after an edit of what is kept for the source.
    void keepTie(const AudioSource& source);

    /// Forgets all processes that are no more, but those of `inUse`.
    void forgetEnded(const std::vector<AudioSource>& inUse);

private:
    [[nodiscard]] bool hasEnded(const std::string& id) const;
    [[nodiscard]] bool isSameApplication(const std::string& id) const;
    void tieFromEarlierRun();
    void storeTies();

    const Applications& applications_;
    DefaultsStore& store_;
    EngineSettings& settings_;
    std::map<std::string, std::uint64_t> births_; // by source id
    std::map<std::string, double> stored_;        // of `births_`
    std::set<std::string> untied_;                // from an earlier run, not looked at yet
};

} // namespace velmora
