// Mutations.h: damages inputs the way disks, editors and other programs do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace velmora {

using Input = std::vector<std::uint8_t>;

/// The same inputs in every run with the same seed.
class Mutations {
public:
    /// @param seeds  at least one
    Mutations(std::vector<Input> seeds, unsigned seed) : seeds_(std::move(seeds)), random_(seed) {}

    /// One of the seeds, changed in one to four places.
    [[nodiscard]] Input next();

private:
    [[nodiscard]] std::size_t below(std::size_t limit);
    void change(Input& input);

    std::vector<Input> seeds_;
    std::mt19937 random_;
};

} // namespace velmora
