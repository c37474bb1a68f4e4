// ProgramName.h: which program a command line runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What follows the last slash.
[[nodiscard]] std::string_view fileName(std::string_view path);

/// Runs what somebody else typed or wrote; never itself the application.
[[nodiscard]] bool isShell(std::string_view program);

/// A shell or the runner of a language: the script says which application it is.
[[nodiscard]] bool isInterpreter(std::string_view program);

/// The words of a desktop entry's command line, taken apart as GLib does to launch it. None when
/// its quotes do not match.
[[nodiscard]] std::vector<std::string> splitExec(const std::string& exec);

/// File name of the program that a desktop entry starts: "env A=1 /usr/bin/player %U" gives
/// "player", "python3 /opt/tool.py" gives "tool.py". Empty when the command line only names a
/// runner that many entries share.
[[nodiscard]] std::string programOfExec(const std::string& exec);

/// The file names under which a running process may be known, likeliest first: of its executable,
/// of what it was called as, and of the script that it interprets.
[[nodiscard]] std::vector<std::string> programsOfProcess(const std::string& executable,
                                                         const std::vector<std::string>& arguments);

} // namespace velmora
