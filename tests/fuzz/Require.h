// Require.h: what a fuzz target promises.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>

namespace velmora {

/// Ends the program when a promise is broken, which every fuzzer takes as a finding.
inline void require(bool holds,
                    const char* promise,
                    std::source_location where = std::source_location::current()) {
    if (!holds) {
        std::fprintf(stderr,
                     "%s:%u: broken promise: %s\n",
                     where.file_name(),
                     static_cast<unsigned>(where.line()),
                     promise);
        std::abort();
    }
}

} // namespace velmora
