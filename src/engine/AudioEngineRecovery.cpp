// How a mix that is on becomes whole again after the audio service, a device or an application that
// it needs has gone.
#include "engine/AudioEngine.h"

#include "capture/SourceCapture.h"

#include <chrono>
#include <utility>

namespace velmora {
namespace {

constexpr std::chrono::milliseconds retryPeriod{200};

} // namespace

void AudioEngine::onDevicesChange() {
    const Status before = status_;
    const bool isAway = !platform_.devices.isAvailable();
    const bool wasAway = std::exchange(isServiceAway_, isAway);
    const bool isDead = !recovery_ && !stream_.isAlive();
    if (isRunning() && ((isAway && !wasAway) || isDead)) {
        awaitService();
    } else if (recovery_) {
        recover();
    } else {
        tellWhetherServiceIsAway(isAway);
    }
    notifyIf(status_ != before);
}

void AudioEngine::tellWhetherServiceIsAway(bool isAway) {
    if (isAway) {
        status_.lastError = serviceAway;
    } else if (status_.lastError == serviceAway) {
        status_.lastError.reset();
    }
}

/// Leaves what runs as it is: what is not dead goes on, and need not be built again.
void AudioEngine::awaitService() {
    const auto monitor = recovery_ ? recovery_->monitorBefore : monitor_.target();
    Recovery recovery;
    recovery.hasOutputs = recovery_ ? recovery_->hasOutputs : isRunning();
    recovery.awaitsDefaultOutput = monitor.has_value();
    recovery.monitorBefore = monitor;
    beginRecovery(std::move(recovery));
}

void AudioEngine::awaitMissingSources() {
    Recovery recovery;
    recovery.hasOutputs = true;
    recovery.told = status_.lastError;
    beginRecovery(std::move(recovery));
}

void AudioEngine::beginRecovery(Recovery recovery) {
    restartTimer_.reset();
    status_.isRunning = true;
    recovery_ = std::move(recovery);
    recovery_->retry = platform_.mainQueue.every(retryPeriod, [this] { recoverAndTell(); });
    recover();
}

void AudioEngine::endRecovery() {
    if (recovery_) {
        recovery_.reset();
        tellWhetherServiceIsAway(!platform_.devices.isAvailable());
    }
}

void AudioEngine::recoverAndTell() {
    const Status before = status_;
    recover();
    notifyIf(status_ != before);
}

/// One attempt. Ends the waiting when nothing is missing any more.
void AudioEngine::recover() {
    std::optional<std::string> message = restoreMissing();
    // Somebody else's message stays until there is something new to say.
    if (message != recovery_->told) {
        recovery_->told = message;
        status_.lastError = std::move(message);
    }
    if (isWhole()) {
        recovery_.reset();
    }
}

/// Returns what is to be said about what is still missing.
std::optional<std::string> AudioEngine::restoreMissing() {
    if (!platform_.devices.isAvailable() || recovery_->awaitsDefaultOutput) {
        return serviceAway;
    }
    try {
        const bool isAlive = recovery_->hasOutputs && stream_.isAlive();
        recovery_->hasOutputs = true;
        if (!isAlive) {
            stopInternals();
            openStream();
            startMeterTimer();
        }
        restoreMonitor();
        return startMissingCaptures();
    } catch (const std::exception& error) {
        recovery_->hasOutputs = false;
        stopInternals();
        meters_.clear();
        return error.what();
    }
}

void AudioEngine::restoreMonitor() {
    const auto target = monitoringTarget();
    const bool isElsewhere =
        monitoringSelection() && recovery_->monitorBefore && target != recovery_->monitorBefore;
    if (!isElsewhere && target != monitor_.target()) {
        restartMonitor();
    }
}

bool AudioEngine::isWhole() const {
    return recovery_->hasOutputs && !recovery_->awaitsDefaultOutput && missingSources().empty() &&
           monitor_.target() == monitoringTarget();
}

} // namespace velmora
