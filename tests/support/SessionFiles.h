// SessionFiles.h: the configuration of a private session's services.
#pragma once

#include "support/PrivateSession.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora::support {

/// Makes the folders that it needs. Errors: throws std::runtime_error.
void writeFile(const std::filesystem::path& file, std::string_view text);

/// The arguments of the sound server's adapter factory for `device`, between braces.
/// @param more  further properties, each with a leading space
[[nodiscard]] std::string adapterArguments(const SessionDevice& device, std::string_view more = {});

/// Writes everything that the services read, below `folder`.
void writeSessionFiles(const std::filesystem::path& folder, const PrivateSession::Setup& setup);

} // namespace velmora::support
