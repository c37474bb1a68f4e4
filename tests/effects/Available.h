// Available.h: the instruction sets that this machine can test.
#pragma once

#include "effects/vector/Instructions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmora {

inline std::vector<Instructions> availableInstructions() {
    std::vector<Instructions> available{Instructions::plain};
    if (areAvailable(Instructions::avx2)) {
        available.push_back(Instructions::avx2);
    }
    return available;
}

inline std::string nameOfInstructions(const testing::TestParamInfo<Instructions>& info) {
    return info.param == Instructions::avx2 ? "Avx2" : "Plain";
}

} // namespace velmora
