// Times the effects chain, whole and effect by effect, beside a plain scalar version of it.
#include "FrameTimes.h"
#include "Speech.h"
#include "effects/EffectsChain.h"
#include "effects/ScalarChain.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace velmora {
namespace {

struct Case {
    const char* name;
    FXParams params;
};

/// The level stage runs with every effect; its own two rows show what that costs.
constexpr std::array cases{
    Case{"level/manual", {.autoGain = false, .manualDB = 3.0F}},
    Case{"level/automatic", {.reverbChar = 1}},
    Case{"lowcut", {.lowcut = 1}},
    Case{"plosive", {.plosive = true}},
    Case{"tilt", {.tilt = 0.5F}},
    Case{"denoise", {.denoise = true}},
    Case{"compressor", {.comp = 2}},
    Case{"reverb", {.reverbChar = 2, .reverbMix = 0.35F}},
    Case{"everything", everyEffect},
};

/// As on a processor that has no more than the least.
struct PlainChain : EffectsChain {
    explicit PlainChain(const FXParams& params) : EffectsChain(params, Instructions::plain) {}
};

/// Walks through the signal block by block, in place as a capture does.
template <typename Chain>
void processBlocks(benchmark::State& state, const FXParams& params, std::int64_t frames) {
    static const std::vector<float> signal = speech(4 * 48000);
    Chain chain(params);
    std::vector<float> block(static_cast<std::size_t>(2 * frames));
    std::size_t at = 0;
    for ([[maybe_unused]] auto _ : state) {
        std::copy_n(signal.data() + at, block.size(), block.data());
        at = at + 2 * block.size() <= signal.size() ? at + block.size() : 0;
        chain.process(block.data(), static_cast<std::int64_t>(block.size()));
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * frames);
}

std::string nameOf(const char* chain, const Case& row, std::int64_t frames) {
    return std::string(chain) + "/" + row.name + "/" + std::to_string(frames);
}

void registerAll() {
    for (const Case& row : cases) {
        for (const std::int64_t frames : blockLengths) {
            const FXParams params = row.params;
            benchmark::RegisterBenchmark(nameOf("chain", row, frames).c_str(),
                                         [=](benchmark::State& state) {
                                             processBlocks<EffectsChain>(state, params, frames);
                                         });
            benchmark::RegisterBenchmark(
                nameOf("plain", row, frames).c_str(),
                [=](benchmark::State& state) { processBlocks<PlainChain>(state, params, frames); });
            benchmark::RegisterBenchmark(nameOf("scalar", row, frames).c_str(),
                                         [=](benchmark::State& state) {
                                             processBlocks<ScalarChain>(state, params, frames);
                                         });
        }
    }
}

void printRatios(const FrameTimes& times) {
    std::printf("\nns per stereo frame, best run; ratio = scalar / chain; plain = without AVX2\n");
    std::printf(
        "%-18s %7s %9s %9s %9s %7s\n", "effect", "frames", "chain", "plain", "scalar", "ratio");
    for (const Case& row : cases) {
        for (const std::int64_t frames : blockLengths) {
            const double chain = times.best(nameOf("chain", row, frames));
            const double scalar = times.best(nameOf("scalar", row, frames));
            if (chain > 0.0 && scalar > 0.0) {
                std::printf("%-18s %7lld %9.2f %9.2f %9.2f %7.2f\n",
                            row.name,
                            static_cast<long long>(frames),
                            chain,
                            times.best(nameOf("plain", row, frames)),
                            scalar,
                            scalar / chain);
            }
        }
    }
}

} // namespace
} // namespace velmora

int main(int argc, char** argv) {
    velmora::registerAll();
    velmora::FrameTimes times;
    if (!velmora::runBenchmarks(argc, argv, times)) {
        return 1;
    }
    velmora::printRatios(times);
}
