// Problem.h: something that is wrong, as a value; its sentence is made where it is shown.
#pragma once

#include "platform/Status.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

struct StoreProblem;

struct Problem {
    enum class Kind {
        ownWords, ///< the sentence comes from elsewhere and stands in `detail`
        // a mix as a whole
        noSource,
        noVirtualMic,
        serviceAway,
        noRealTimeRights,
        // an output
        noUnit, ///< an input's as well
        outputNotAssigned,
        pairMissing,
        pairNotRouted,
        outputNotStarted,
        // a source
        inputNotAssigned,
        channelMissing,
        inputNotStarted,
        noSoundYet,
        tapRefused,
        tapDeviceRefused,
        tapCallbackRefused,
        tapNotStarted,
        // a recall, a launch
        notFound,
        notLaunched,
        // presets that are carried, or could not be read
        presetFileUnknown,
        presetFileNewer,
        fileNotRead,
        fileNotWritten,
        presetsUnreadable,
        presetsReadable, ///< set aside before, to be had again
        // the settings file
        storeDamaged,
        storeNewer,
        storeUnwritable,
        storeFull,
        storeInUse,
        storeKeptApart,
        storeGone,
        storeCopyTaken,
        storeCopyOffered,
        // DAW mode
        noDriver,
        publicSinkRefused,
    };
    Kind kind{};
    std::string subject{}; ///< a source, an application or a file; never translated
    /// Of the settings file: where the damaged one lies now, or a copy's day; of another file: the
    /// system's words for why.
    std::string detail{};
    std::string key{};       ///< `keyOf` the source whose joining ends the problem; empty = none
    Status status{};         ///< of the refusal
    std::int64_t first{};    ///< the channel, or the first of the pair, 1-based
    std::int64_t channels{}; ///< how many the device has

    bool operator==(const Problem&) const = default;
};

/// What a store tells, as it is shown.
[[nodiscard]] Problem problemOf(const StoreProblem& problem);

/// Looks up a French text in the user's language.
using Translation = std::function<std::string(std::string_view french)>;

/// The sentence for the user. Subjects, numbers and details are put in after the lookup and in one
/// pass, so that a name that looks like a placeholder or like a text of ours stays as it is.
[[nodiscard]] std::string sentence(const Problem& problem, const Translation& translation);
[[nodiscard]] std::string frenchSentence(const Problem& problem);

/// One line each, but that what a recall could not find shares one.
[[nodiscard]] std::string sentences(std::span<const Problem> problems,
                                    const Translation& translation);

} // namespace velmora
