// Notices.h: short messages that the desktop shows.
#pragma once

#include <string>

namespace velmora {

/// Threads: main.
class Notices {
public:
    virtual ~Notices() = default;

    /// Shows this in the place of the one before, for a moment. Never waits; where nobody shows
    /// messages, nothing happens.
    virtual void show(const std::string& sentence) = 0;
};

} // namespace velmora
