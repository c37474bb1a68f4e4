// GuardedPlatform.h: a platform whose real-time callbacks run inside a RealTimeGuard.
#pragma once

#include "platform/Platform.h"

#include <memory>

namespace velmora {

/// Hands everything through to `real`. Threads: main.
class GuardedPlatform {
public:
    explicit GuardedPlatform(const Platform& real);
    ~GuardedPlatform();
    GuardedPlatform(const GuardedPlatform&) = delete;
    GuardedPlatform& operator=(const GuardedPlatform&) = delete;

    [[nodiscard]] Platform platform();

private:
    class Taps;
    class Units;

    Platform real_;
    std::unique_ptr<Taps> taps_;
    std::unique_ptr<Units> units_;
};

} // namespace velmora
