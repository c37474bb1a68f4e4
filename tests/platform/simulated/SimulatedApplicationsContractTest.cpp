#include "platform/contract/ApplicationsContract.h"
#include "platform/simulated/SimulatedApplications.h"
#include "platform/simulated/SimulatedMainQueue.h"

namespace velmora {

class SimulatedApplicationsRig {
public:
    SimulatedApplications& applications() { return applications_; }
    bool runUntil(const std::function<bool()>& condition) {
        constexpr int mostSteps = 10000;
        for (int step = 0; step < mostSteps && !condition(); ++step) {
            queue_.advance(std::chrono::milliseconds{1});
        }
        return condition();
    }
    void install(const std::string& id, const std::string& name) {
        applications_.install({.bundleID = id, .name = name, .location = "/entries/" + id});
        applications_.setIcon(id, "icon-" + id);
    }
    void installFailing(const std::string& id) {
        install(id, id);
        applications_.planLaunch("/entries/" + id, {.result = std::nullopt});
    }
    void quit(std::int32_t pid) { applications_.quit(pid); }

private:
    SimulatedMainQueue queue_;
    SimulatedApplications applications_{queue_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ApplicationsContract, SimulatedApplicationsRig);

} // namespace velmora
