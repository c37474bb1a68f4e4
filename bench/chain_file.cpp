// Takes a file through the effects chain, as a whole program that other tools can be compared with.
//
//   velmora_chain_file <effect> <input> <output>
//   velmora_chain_file --speech <seconds> <output>
//
// Files hold interleaved stereo at 48 kHz as 32-bit floats without a header. An effect is one of
// the names below; "copy" changes nothing.
#include "Speech.h"
#include "ThreadMode.h"
#include "effects/EffectsChain.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace velmora {
namespace {

constexpr std::size_t blockFloats = 2 * 128; // what a capture hands over at a usual block length
constexpr std::size_t fileFloats = 64 * blockFloats;

struct Effect {
    std::string_view name;
    FXParams params;
};

/// The level stage runs with each of them; by itself it is "level".
constexpr std::array effects{
    Effect{"copy", {}},
    Effect{"lowcut", {.lowcut = 1, .autoGain = false}},
    Effect{"plosive", {.autoGain = false, .plosive = true}},
    Effect{"tilt", {.tilt = 0.5F, .autoGain = false}},
    Effect{"denoise", {.autoGain = false, .denoise = true}},
    Effect{"compressor", {.comp = 2, .autoGain = false}},
    Effect{"level", {.reverbChar = 1}},
    Effect{"reverb", {.autoGain = false, .reverbChar = 2, .reverbMix = 0.35F}},
    Effect{"everything", everyEffect},
};

const FXParams* find(std::string_view name) {
    for (const Effect& effect : effects) {
        if (effect.name == name) {
            return &effect.params;
        }
    }
    return nullptr;
}

void writeFloats(std::ofstream& to, std::span<const float> samples) {
    to.write(reinterpret_cast<const char*>(samples.data()),
             static_cast<std::streamsize>(samples.size_bytes()));
}

bool process(const FXParams& params, const char* input, const char* output) {
    std::ifstream from(input, std::ios::binary);
    std::ofstream to(output, std::ios::binary);
    EffectsChain chain(params);
    std::vector<float> samples(fileFloats);
    while (from && to) {
        from.read(reinterpret_cast<char*>(samples.data()),
                  static_cast<std::streamsize>(samples.size() * sizeof(float)));
        const auto read =
            std::span(samples).first(static_cast<std::size_t>(from.gcount()) / sizeof(float));
        for (std::size_t at = 0; at < read.size(); at += blockFloats) {
            const auto block = read.subspan(at, std::min(blockFloats, read.size() - at));
            chain.process(block.data(), static_cast<std::int64_t>(block.size()));
        }
        writeFloats(to, read);
    }
    return from.eof() && to.flush().good();
}

bool makeSpeech(const char* seconds, const char* output) {
    std::ofstream to(output, std::ios::binary);
    writeFloats(to, speech(48000 * std::strtoul(seconds, nullptr, 10)));
    return to.flush().good();
}

} // namespace
} // namespace velmora

int main(int argc, char** argv) {
    using namespace velmora;
    const std::string_view what = argc == 4 ? argv[1] : "";
    const FXParams* params = find(what);
    if (what != "--speech" && params == nullptr) {
        std::fputs("usage: velmora_chain_file <effect> <input> <output>\n"
                   "       velmora_chain_file --speech <seconds> <output>\n",
                   stderr);
        return 2;
    }
    flushDenormals();
    const bool isDone =
        params == nullptr ? makeSpeech(argv[2], argv[3]) : process(*params, argv[2], argv[3]);
    if (!isDone) {
        std::perror(argv[3]);
        return 1;
    }
}
