// ChildProcess.h: a program started by a test or a demonstration, ended with its starter.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace velmora::support {

using Environment = std::map<std::string, std::string>;

/// The environment of this process.
[[nodiscard]] Environment currentEnvironment();

/// How to start a program.
struct Command {
    std::vector<std::string> arguments{}; ///< the program first, looked up in PATH
    Environment environment = currentEnvironment();
    std::filesystem::path output{}; ///< file that receives stdout and stderr; empty: inherited
    pid_t processGroup = -1;        ///< group to join; 0 = its own new one, -1 = this process's
    std::filesystem::path input = "/dev/null"; ///< file that stdin reads, a terminal for instance
    bool takesLines = false;                   ///< stdin is a pipe written by `send` instead
    bool keepsStdin = false;                   ///< stdin is this process's
    bool outlivesStarter = false;              ///< the kernel leaves it alone when its starter ends
};

/// One running child. The kernel kills it when the thread that started it ends, however that
/// happens, so start children from the main thread.
class ChildProcess {
public:
    /// Errors: throws std::system_error when the program cannot be started at all; a program that
    /// does not exist exits with 127.
    explicit ChildProcess(const Command& command);
    ~ChildProcess(); ///< ends it: SIGTERM, and SIGKILL after a second
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }
    [[nodiscard]] bool isRunning();

    /// Writes one line to the child's stdin. A child that has ended does not read it.
    void send(std::string_view line) const;
    /// The child reads the end of its input.
    void closeInput();

    void signal(int number) const;
    /// SIGTERM, and SIGKILL after a second; returns when the child is gone.
    void end();
    /// SIGKILL; returns when the child is gone.
    void kill();
    /// The exit status (128 + signal number after a signal), or none when it still runs.
    std::optional<int> wait(std::chrono::milliseconds limit);

private:
    void reap(int options);
    void release() noexcept;

    pid_t pid_ = 0; // 0 = none
    int input_ = -1;
    std::optional<int> status_;
};

/// Runs a program to its end and returns what it wrote to stdout and stderr.
/// Errors: throws std::runtime_error with the output when it fails or needs more than ten seconds.
std::string runToEnd(const std::vector<std::string>& arguments, const Environment& environment);

} // namespace velmora::support
