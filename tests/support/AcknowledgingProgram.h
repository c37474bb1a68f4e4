// AcknowledgingProgram.h: another process that reports each thing it has done, until it is killed.
#pragma once

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace velmora::support {

/// The program writes the number of each thing done to stdout, as 8 bytes. It ends with this
/// object, or when nobody reads its pipe any more.
class AcknowledgingProgram {
public:
    /// @param arguments  the program's path first
    explicit AcknowledgingProgram(std::vector<std::string> arguments) {
        std::vector<char*> pointers;
        for (auto& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        pid_ = fork();
        if (pid_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            execv(pointers.front(), pointers.data());
            _exit(127);
        }
        close(ends[1]);
        acknowledgements_ = ends[0];
    }
    ~AcknowledgingProgram() {
        kill();
        close(acknowledgements_);
    }
    AcknowledgingProgram(const AcknowledgingProgram&) = delete;
    AcknowledgingProgram& operator=(const AcknowledgingProgram&) = delete;

    /// Waits for the next acknowledgement; false when the program is gone.
    bool next() {
        std::uint64_t number = 0;
        if (read(acknowledgements_, &number, sizeof number) != sizeof number) {
            return false;
        }
        last_ = number;
        return true;
    }

    /// The number last acknowledged.
    [[nodiscard]] const std::optional<std::uint64_t>& last() const { return last_; }

    /// Kills it at once and reads what it has acknowledged. False when it had ended by itself.
    bool kill() {
        if (pid_ == 0) {
            return false;
        }
        ::kill(pid_, SIGKILL);
        while (next()) {
        }
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = 0;
        return WIFSIGNALED(status);
    }

private:
    pid_t pid_ = 0;
    int acknowledgements_ = -1;
    std::optional<std::uint64_t> last_;
};

} // namespace velmora::support
