#include "operations/RightsNotice.h"

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"

namespace velmora {
namespace {

constexpr auto toldKey = "realTimeRightsTold"; // a boolean

} // namespace

RightsNotice::RightsNotice(AudioEngine& engine, DefaultsStore& defaults)
    : engine_(engine), defaults_(defaults),
      connection_(engine.changedBesidesLevels().connect([this] { look(); })) {
}

void RightsNotice::look() {
    if (engine_.blocks().lacksRights && !defaults_.get(toldKey)) {
        defaults_.set(toldKey, true);
        engine_.tellMore(ProblemOrigin::launch, {.kind = Problem::Kind::noRealTimeRights});
    }
}

} // namespace velmora
