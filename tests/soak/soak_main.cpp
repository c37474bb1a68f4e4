// velmora_soak: works the program at random while its session comes apart, and judges it.
//
// velmora_soak [--seed <number>] [--minutes <number>] [--faults all|none|<name>,...] [--timers]
//              [--headless] [--tell]
//   --faults  of applications, devices, blocks, daemon, manager, pulse
//   --timers  devices do not wait for whoever is late
//   --headless  by commands only, without a window
//   --tell    prints every action
//
// Ends with 0 when nothing was found, else with what was done last and what was found.

#include "soak/Soak.h"
#include "support/Wait.h"

#include <QCoreApplication>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace velmora::soak;

constexpr const char* usage =
    "usage: velmora_soak [--seed <number>] [--minutes <number>] [--faults all|none|<name>,...] "
    "[--timers] [--headless] [--tell]\n";

/// None when they are misused.
std::optional<SoakOptions> optionsFrom(int count, char** words) {
    SoakOptions options;
    for (int at = 1; at < count; ++at) {
        const std::string_view word = words[at];
        const bool hasValue = at + 1 < count;
        if (word == "--timers") {
            options.isPatient = false;
        } else if (word == "--headless") {
            options.hasWindow = false;
        } else if (word == "--tell") {
            options.isTold = true;
        } else if (word == "--seed" && hasValue) {
            options.seed = std::stoull(words[++at]);
        } else if (word == "--minutes" && hasValue) {
            options.minutes = std::stod(words[++at]);
        } else if (word == "--faults" && hasValue) {
            const auto faults = Faults::named(words[++at]);
            if (!faults) {
                return std::nullopt;
            }
            options.faults = *faults;
        } else {
            return std::nullopt;
        }
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    velmora::support::betweenLooks = [] { QCoreApplication::processEvents(); };
    try {
        const auto options = optionsFrom(argc, argv);
        if (!options) {
            std::cerr << usage;
            return 2;
        }
        return Soak(*options, std::cout).run() ? 0 : 1;
    } catch (const std::invalid_argument&) {
        std::cerr << usage;
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "velmora_soak: " << error.what() << '\n';
        return 1;
    }
}
