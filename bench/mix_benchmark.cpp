// Times one output's render callback with few and many sources.
#include "FrameTimes.h"
#include "engine/realtime/OutputMix.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace velmora {
namespace {

constexpr std::array<std::size_t, 3> ringCounts{1, 8, 64};
constexpr std::int64_t ringCapacity = 192'000; // floats, as in the engine

std::vector<float> noise(std::size_t samples, float amplitude) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-amplitude, amplitude);
    std::vector<float> signal(samples);
    std::ranges::generate(signal, [&] { return uniform(random); });
    return signal;
}

/// Writes a block to every ring and renders it; both sides count.
void renderBlocks(benchmark::State& state,
                  std::size_t ringCount,
                  float loudness,
                  std::int64_t frames) {
    std::vector<std::shared_ptr<RingBuffer>> rings(ringCount);
    std::ranges::generate(rings, [] { return std::make_shared<RingBuffer>(ringCapacity); });
    const auto box = std::make_shared<RingSetBox>();
    box->set(rings);
    OutputMix mix(box, std::make_shared<Limiter>(), std::make_shared<ParamBox>(0.8F));
    const auto block =
        noise(static_cast<std::size_t>(2 * frames), loudness / static_cast<float>(ringCount));
    std::vector<float> left(static_cast<std::size_t>(frames));
    std::vector<float> right(left);
    const std::array<float*, 2> channels{left.data(), right.data()};
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& ring : rings) {
            ring->write(block.data(), 2 * frames);
        }
        mix.render(frames, channels);
        benchmark::DoNotOptimize(left.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * frames);
}

struct Level {
    const char* name;
    float loudness; // linear peak of the sum before the volume
};
constexpr std::array levels{Level{"below the ceiling", 0.5F}, Level{"limiting", 2.0F}};

std::string nameOf(std::size_t rings, const Level& level, std::int64_t frames) {
    return "mix/" + std::to_string(rings) + " rings, " + level.name + "/" + std::to_string(frames);
}

void registerAll() {
    for (const std::size_t rings : ringCounts) {
        for (const Level& level : levels) {
            for (const std::int64_t frames : blockLengths) {
                benchmark::RegisterBenchmark(
                    nameOf(rings, level, frames).c_str(),
                    [rings, loudness = level.loudness, frames](benchmark::State& state) {
                        renderBlocks(state, rings, loudness, frames);
                    });
            }
        }
    }
}

void printTable(const FrameTimes& times) {
    std::printf("\nns per stereo frame, best run; writing to the rings included\n");
    std::printf("%6s  %-18s %7s %9s\n", "rings", "signal", "frames", "mix");
    for (const std::size_t rings : ringCounts) {
        for (const Level& level : levels) {
            for (const std::int64_t frames : blockLengths) {
                if (const double best = times.best(nameOf(rings, level, frames)); best > 0.0) {
                    std::printf("%6zu  %-18s %7lld %9.2f\n",
                                rings,
                                level.name,
                                static_cast<long long>(frames),
                                best);
                }
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
    velmora::printTable(times);
}
