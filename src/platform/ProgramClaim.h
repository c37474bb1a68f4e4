// ProgramClaim.h: what a sound service knows of a program that has connected to it.
#pragma once

#include <cstdint>
#include <string>

namespace velmora {

/// Numbers from here on belong to no process (Linux numbers them below 2^22). They stand for
/// programs whose process cannot be told, one number for each connection.
inline constexpr std::int32_t firstStandIn = 1 << 30;

/// One program as it stands behind its connection.
struct ProgramClaim {
    std::int32_t pid{}; ///< 0 = none was given
    /// The kernel vouches for `pid`. Otherwise it is the program's own word, as it is counted in
    /// its sandbox and on its machine.
    bool isVouchedFor{};
    std::string program{}; ///< file name of the program
    std::string machine{}; ///< machine-id of where it runs
    std::string host{};    ///< name of where it runs
    std::string sandbox{}; ///< the application that the service found its sandbox to be made for

    bool operator==(const ProgramClaim&) const = default;
};

/// Which process a program is.
struct ProgramIdentity {
    std::int32_t pid{};     ///< 0 = it cannot be told
    std::string bundleID{}; ///< the application, when it is known although the process is not

    bool operator==(const ProgramIdentity&) const = default;
};

} // namespace velmora
