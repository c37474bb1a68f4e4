// SessionFiles.h: the configuration of a private session's services.
#pragma once

#include "support/PrivateSession.h"

#include <filesystem>
#include <string>

namespace velmora::support {

/// The arguments of the sound server's adapter factory for `device`, between braces.
[[nodiscard]] std::string adapterArguments(const SessionDevice& device);

/// Writes everything that the services read, below `folder`.
void writeSessionFiles(const std::filesystem::path& folder, const PrivateSession::Setup& setup);

} // namespace velmora::support
