#include "effects/FXParams.h"

namespace velmora {

bool FXParams::isNeutral() const {
    return *this == FXParams{};
}

} // namespace velmora
