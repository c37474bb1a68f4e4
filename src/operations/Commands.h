// Commands.h: the program's commands, carried out where the mixer is.
#pragma once

#include "operations/CommandTable.h"
#include "operations/MixerControl.h"
#include "operations/MixerParts.h"
#include "operations/Refusal.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

struct CommandReply {
    int status{};         ///< 0 = done, 1 = refused, 2 = wrong usage
    std::string output{}; ///< for the standard output; whole lines
    std::string error{};  ///< a sentence, when the status is not 0

    bool operator==(const CommandReply&) const = default;
};

/// Reads the words of a command line, asks `MixerControl`, and says what is to be printed, in the
/// user's language.
///
/// Threads: main.
class Commands {
public:
    /// @param quit  asked for by the command of that name; called before `run` returns
    Commands(const MixerParts& parts, std::function<void()> quit);

    /// @param words  as the user wrote them, without the program's name; "--json" may be anywhere
    [[nodiscard]] CommandReply run(std::span<const std::string> words);

private:
    using Words = std::span<const std::string>;
    using Printed = Answer<std::string>;

    [[nodiscard]] Printed carryOut(std::string_view name, Words words, bool asJson);
    [[nodiscard]] std::optional<Printed> shown(std::string_view name, Words words, bool asJson);
    [[nodiscard]] Answer<> done(std::string_view name, Words words);
    [[nodiscard]] Printed effects(Words words, bool asJson);
    [[nodiscard]] Answer<> volume(Words words);
    [[nodiscard]] Answer<Switch> switchWord(Words words, std::size_t index) const;
    [[nodiscard]] Answer<double> db(const std::string& word) const;
    [[nodiscard]] Refusal misused(std::string_view french, std::string_view name) const;

    MixerParts parts_;
    MixerControl control_;
    std::function<void()> quit_;
};

} // namespace velmora
