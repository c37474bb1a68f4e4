// Runs a fuzz target over its corpus, and over a bounded number of inputs made from it.
#include "Mutations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace velmora {
namespace {

/// In the order of their names, so that every run makes the same inputs.
std::vector<Input> corpus() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_FUZZ_CORPUS)) {
        files.push_back(entry.path());
    }
    std::ranges::sort(files);
    std::vector<Input> inputs;
    for (const auto& path : files) {
        std::ifstream file(path, std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

void run(const Input& input) {
    (void)LLVMFuzzerTestOneInput(input.data(), input.size());
}

TEST(FuzzTarget, KeepsItsPromisesForItsCorpus) {
    const auto inputs = corpus();
    ASSERT_GE(inputs.size(), 3U);

    std::ranges::for_each(inputs, run);
}

TEST(FuzzTarget, KeepsItsPromisesForMutationsOfItsCorpus) {
    const auto inputs = corpus();
    Mutations mutations(inputs, 20240229);

    for (int round = 0; round < VELMORA_FUZZ_ROUNDS; ++round) {
        run(mutations.next());
    }
}

} // namespace
} // namespace velmora
