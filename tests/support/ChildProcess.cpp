#include "support/ChildProcess.h"

#include "support/Wait.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velmora::support {
namespace {

/// `strings` as the null-terminated list that exec takes; the strings must outlive it.
std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> list;
    list.reserve(strings.size() + 1);
    for (auto& text : strings) {
        list.push_back(text.data());
    }
    list.push_back(nullptr);
    return list;
}

struct Files {
    int input = -1;  // becomes stdin; -1: keep
    int output = -1; // becomes stdout and stderr; -1: keep
};

/// The child between fork and exec: async-signal-safe calls only, as other threads may have held
/// any lock at the moment of the fork.
[[noreturn]] void becomeProgram(const Command& command,
                                pid_t parent,
                                Files files,
                                char* const* arguments,
                                char* const* environment) {
    constexpr int cannotStart = 127;
    if (!command.outlivesStarter) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(cannotStart);
        }
    }
    if (command.processGroup >= 0) {
        setpgid(0, command.processGroup);
    }
    if (files.input >= 0) {
        dup2(files.input, STDIN_FILENO);
    }
    if (files.output >= 0) {
        dup2(files.output, STDOUT_FILENO);
        dup2(files.output, STDERR_FILENO);
    }
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
    execvpe(arguments[0], arguments, environment);
    _exit(cannotStart);
}

void closeIfOpen(int file) {
    if (file >= 0) {
        close(file);
    }
}

} // namespace

Environment currentEnvironment() {
    Environment result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (const auto split = text.find('='); split != std::string_view::npos) {
            result.emplace(text.substr(0, split), text.substr(split + 1));
        }
    }
    return result;
}

ChildProcess::ChildProcess(const Command& command) {
    auto arguments = command.arguments;
    std::vector<std::string> assignments;
    for (const auto& [name, value] : command.environment) {
        assignments.emplace_back(name).append("=").append(value);
    }
    const auto argumentList = pointers(arguments);
    const auto environmentList = pointers(assignments);

    Files files;
    if (command.takesLines) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        files.input = ends[0];
        input_ = ends[1];
    } else if (!command.keepsStdin) {
        files.input = open(command.input.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
    }
    if (!command.output.empty()) {
        files.output = open(
            command.output.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOCTTY | O_CLOEXEC, 0600);
    }

    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        becomeProgram(command, parent, files, argumentList.data(), environmentList.data());
    }
    const int error = errno;
    closeIfOpen(files.input);
    closeIfOpen(files.output);
    if (pid_ < 0) {
        closeIfOpen(input_);
        throw std::system_error(error, std::generic_category(), "fork");
    }
    if (command.processGroup >= 0) {
        setpgid(pid_, command.processGroup); // as in the child: whoever is first
    }
}

ChildProcess::~ChildProcess() {
    release();
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, 0)), input_(std::exchange(other.input_, -1)),
      status_(std::exchange(other.status_, std::nullopt)) {
}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    if (this != &other) {
        release();
        pid_ = std::exchange(other.pid_, 0);
        input_ = std::exchange(other.input_, -1);
        status_ = std::exchange(other.status_, std::nullopt);
    }
    return *this;
}

void ChildProcess::release() noexcept {
    if (pid_ > 0) {
        end();
    }
    closeInput();
}

void ChildProcess::reap(int options) {
    int raw = 0;
    if (status_ || pid_ <= 0 || waitpid(pid_, &raw, options) != pid_) {
        return;
    }
    constexpr int signalBase = 128; // as shells report it
    status_ = WIFSIGNALED(raw) ? signalBase + WTERMSIG(raw) : WEXITSTATUS(raw);
}

bool ChildProcess::isRunning() {
    reap(WNOHANG);
    return pid_ > 0 && !status_;
}

void ChildProcess::send(std::string_view line) const {
    const std::string text = std::string(line) + "\n";
    // A child that died must not take this process along with SIGPIPE.
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    [[maybe_unused]] const auto written = write(input_, text.data(), text.size());
    std::signal(SIGPIPE, before);
}

void ChildProcess::closeInput() {
    closeIfOpen(std::exchange(input_, -1));
}

void ChildProcess::signal(int number) const {
    if (pid_ > 0 && !status_) {
        ::kill(pid_, number);
    }
}

void ChildProcess::end() {
    signal(SIGTERM);
    signal(SIGCONT); // a stopped child would not see the other one
    if (!wait(std::chrono::seconds(1))) {
        kill();
    }
}

void ChildProcess::kill() {
    signal(SIGKILL);
    reap(0);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    static_cast<void>(waitUntil([this] { return !isRunning(); }, limit));
    return status_;
}

std::string runToEnd(const std::vector<std::string>& arguments, const Environment& environment) {
    const int file = memfd_create("output", MFD_CLOEXEC);
    const std::string path = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file);
    ChildProcess child({.arguments = arguments, .environment = environment, .output = path});
    const auto status = child.wait(patience);
    child.kill();
    std::ifstream in(path);
    std::string output{std::istreambuf_iterator<char>(in), {}};
    close(file);
    if (status != 0) {
        throw std::runtime_error(arguments.front() + " failed: " + output);
    }
    return output;
}

} // namespace velmora::support
