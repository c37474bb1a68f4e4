// SimulatedNotices.h: messages in memory.
#pragma once

#include "platform/Notices.h"

#include <string>
#include <vector>

namespace velmora {

/// Threads: main.
class SimulatedNotices : public Notices {
public:
    void show(const std::string& sentence) override { shown.push_back(sentence); }

    std::vector<std::string> shown; ///< all of them, the latest last
};

} // namespace velmora
