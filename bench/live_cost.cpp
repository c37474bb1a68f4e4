// velmora_bench_live_cost: what the running mixer costs and delays on a private audio session, next
// to empty nodes and to the sound server's own filter chain with LADSPA plugins.
//
// velmora_bench_live_cost [<seconds per window> [<rounds> [<sources>...]]]
// Blocks of 128 frames. The programs take turns, a window each a round, so that what else the
// machine does meets all alike; of each the cheapest window counts, and of the losses all.

#include "LiveVariants.h"

#include "support/ClientPrograms.h"
#include "support/ProcessFigures.h"
#include "support/SessionDevices.h"
#include "support/Wait.h"
#include "support/WavFile.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <iterator>
#include <limits>
#include <list>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

namespace velmora::bench {
namespace {

using namespace support;
using Seconds = std::chrono::duration<double>;

constexpr std::uint32_t blockFrames = 128;
constexpr double toneHz = 440;
constexpr double toneDb = -20;

struct Program {
    std::string name;
    std::function<Running(const PrivateSession&, const std::vector<PlayingApp>&)> start;
    bool isHeard; ///< in the virtual microphone
    bool tellsLosses;
};

struct Cost {
    double coreShare = std::numeric_limits<double>::infinity(); // 1 = one core
    std::map<std::string, double> threadShares;                 // of the same window, by name
    std::string losses;
};

class LiveCost {
public:
    LiveCost(Seconds window, int rounds) : window_(window), rounds_(rounds) {
        session_.forceQuantum(blockFrames);
    }

    void compare(std::size_t sources) {
        std::list<ToneApp> apps;
        std::vector<PlayingApp> playing;
        for (std::size_t at = 0; at < sources; ++at) {
            const std::string stream = "tone." + std::to_string(at);
            apps.emplace_back(session_).play(stream, toneHz, toneHz, toneDb);
            playing.push_back({.node = stream, .pid = apps.back().pid()});
        }
        std::vector<Cost> costs(programs_.size());
        for (int round = 0; round < rounds_; ++round) {
            for (std::size_t at = 0; at < programs_.size(); ++at) {
                measure(programs_[at], playing, costs[at]);
            }
        }
        for (std::size_t at = 0; at < programs_.size(); ++at) {
            const double percent = 100 * costs[at].coreShare;
            std::printf("| %zu | %s | %.2f %% | %.3f %% | %s | %s |\n",
                        sources,
                        programs_[at].name.c_str(),
                        percent,
                        percent / static_cast<double>(sources),
                        threadsOf(costs[at]).c_str(),
                        costs[at].losses.c_str());
        }
        std::fflush(stdout);
    }

    /// From an application's output to the virtual microphone's, by a click. Units: frames.
    [[nodiscard]] long delayThrough(const std::function<Running(const PlayingApp&)>& path) {
        constexpr std::size_t silence = 4 * 48000; // until all is linked
        Sound click{.samples = std::vector<float>(2 * (silence + 48000)), .channels = 2};
        click.samples[2 * silence] = 0.9F;
        click.samples[2 * silence + 1] = 0.9F;
        const auto file = session_.folder() / "click.wav";
        writeWav(file, click);
        const ChildProcess player = session_.start({"pw-play", file}, "click");
        const Running way = path({.node = "pw-play", .pid = player.pid()});
        const Recorder both(session_, "pw-play," + microphone, {1, 1});
        const auto firstSound = [&](std::uint32_t channel) -> std::optional<long> {
            const auto heard = both.all().channel(channel);
            const auto found =
                std::ranges::find_if(heard, [](float sample) { return std::abs(sample) > 0.01F; });
            return found == heard.end() ? std::nullopt : std::optional(found - heard.begin());
        };
        if (!waitUntil([&] { return firstSound(0) && firstSound(1); }, std::chrono::seconds(20))) {
            throw std::runtime_error("the click was not heard");
        }
        return *firstSound(1) - *firstSound(0);
    }

    /// The application linked to the microphone by hand.
    Running linkDirectly(const PlayingApp& app) {
        joinPorts(session_, app.node + ":output_FL", microphone + ":input_FL");
        return {.process = session_.start({"sleep", "60"}, "direct"), .answers = {}};
    }
    Running mixOnly(const PlayingApp& app) { return startMixer(session_, {app}); }

private:
    void measure(const Program& program, const std::vector<PlayingApp>& apps, Cost& cost) {
        const Running running = program.start(session_, apps);
        const Recorder mic(session_, microphone, {1});
        if (program.isHeard && !waitUntil([&] { return mic.toneDb(0, toneHz) > -60; })) {
            throw std::runtime_error(program.name + " is not heard\n" + session_.logTails());
        }
        std::this_thread::sleep_for(std::chrono::seconds(1)); // what starting set off is over
        const std::string lossesBefore = program.tellsLosses ? running.ask() : "";
        const auto begin = std::chrono::steady_clock::now();
        const auto before = threadSeconds(running.process.pid());
        std::this_thread::sleep_for(window_);
        auto threads = threadSeconds(running.process.pid());
        const Seconds passed = std::chrono::steady_clock::now() - begin;
        double used = 0;
        for (auto& [name, share] : threads) {
            const auto earlier = before.find(name);
            share = (share - (earlier == before.end() ? 0 : earlier->second)) / passed.count();
            used += share;
        }
        if (used < cost.coreShare) {
            cost.coreShare = used;
            cost.threadShares = std::move(threads);
        }
        if (program.tellsLosses) {
            cost.losses +=
                (cost.losses.empty() ? "" : "· ") + difference(lossesBefore, running.ask());
        }
    }

    /// Those that are worth a mention.
    static std::string threadsOf(const Cost& cost) {
        std::ostringstream text;
        for (const auto& [name, share] : cost.threadShares) {
            if (share >= 0.0001) {
                text << (text.view().empty() ? "" : ", ") << name << ' '
                     << std::round(1e4 * share) / 100 << " %";
            }
        }
        return text.str();
    }

    /// "5 1" after "3 1" is "2 0".
    static std::string difference(const std::string& before, const std::string& after) {
        std::istringstream from(before);
        std::istringstream to(after);
        std::ostringstream text;
        for (long first = 0, second = 0; from >> first && to >> second;) {
            text << second - first << ' ';
        }
        return text.str();
    }

    Seconds window_;
    int rounds_;
    PrivateSession session_{{.devices = {speakers, interface4}}};
    std::vector<Program> programs_ = {
        {"mixer, every effect on", startMixer, true, true},
        {"the same, with monitoring", startMonitoringMixer, true, true},
        {"empty nodes", startEmptyNodes, false, true},
        {"filter chain, LADSPA", startFilterChains, true, false},
        {"filter chain, three plain filters", startPlainChains, true, false},
    };
};

} // namespace
} // namespace velmora::bench

int main(int argc, char** argv) {
    using namespace velmora::bench;
    if (const auto missing = missingPlugins(); !missing.empty()) {
        std::cerr << "velmora_bench_live_cost: missing LADSPA plugins:";
        for (const std::string& file : missing) {
            std::cerr << ' ' << file;
        }
        std::cerr << "\nOn Debian: apt-get install swh-plugins tap-plugins cmt\n";
        return 1;
    }
    try {
        const double seconds = argc > 1 ? std::atof(argv[1]) : 4;
        const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
        LiveCost cost(Seconds(seconds), rounds);
        std::printf("Added delay: %ld frames direct, %ld through the mixer\n\n",
                    cost.delayThrough([&](const auto& app) { return cost.linkDirectly(app); }),
                    cost.delayThrough([&](const auto& app) { return cost.mixOnly(app); }));
        std::puts(
            "| Sources | Program | of a core | each source | by thread | lost in each round |");
        std::puts("|---|---|---|---|---|---|");
        std::vector<std::size_t> counts{1, 8, 32};
        if (argc > 3) {
            counts.clear();
            std::ranges::transform(
                argv + 3, argv + argc, std::back_inserter(counts), [](const char* text) {
                    return static_cast<std::size_t>(std::atoi(text));
                });
        }
        for (const std::size_t sources : counts) {
            cost.compare(sources);
        }
    } catch (const std::exception& error) {
        std::cerr << "velmora_bench_live_cost: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
