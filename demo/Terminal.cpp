#include "Terminal.h"

#include <array>
#include <cerrno>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace velmora {
namespace {

constexpr std::string_view enterScreen = "\x1b[?1049h\x1b[?25l"; // other screen, no cursor
constexpr std::string_view leaveScreen = "\x1b[?25h\x1b[?1049l";
constexpr int usualColumns = 80;

} // namespace

Terminal::Terminal() {
    interactive_ = isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1 &&
                   tcgetattr(STDIN_FILENO, &before_) == 0;
    if (!interactive_) {
        return;
    }
    termios raw = before_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    // Suspended, the program would hold up every program that shares a device with its outputs;
    // with its drawing held back it would not even take a key.
    raw.c_cc[VSUSP] = _POSIX_VDISABLE;
    raw.c_iflag &= ~static_cast<tcflag_t>(IXON);
    tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    write(enterScreen);
}

Terminal::~Terminal() {
    if (interactive_) {
        write(leaveScreen);
        tcsetattr(STDIN_FILENO, TCSANOW, &before_);
    }
}

int Terminal::columns() const {
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usualColumns;
}

void Terminal::draw(const std::vector<std::string>& lines) {
    if (!interactive_) {
        return;
    }
    std::string frame = "\x1b[H";
    for (const std::string& line : lines) {
        frame += line + "\x1b[K\r\n";
    }
    write(frame + "\x1b[J");
}

std::string Terminal::takeInput() {
    std::string input;
    std::array<char, 256> block{};
    pollfd ready{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    while (interactive_ && poll(&ready, 1, 0) == 1 && (ready.revents & POLLIN) != 0) {
        const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
        if (count <= 0) {
            break;
        }
        input.append(block.data(), static_cast<std::size_t>(count));
    }
    return input;
}

void Terminal::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count < 0 ? 0 : count));
    }
}

} // namespace velmora
