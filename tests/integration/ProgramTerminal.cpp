#include "ProgramTerminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <system_error>
#include <unistd.h>

namespace velmora {
namespace {

int checked(int result) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), "pseudo terminal");
    }
    return result;
}

} // namespace

ProgramTerminal::ProgramTerminal()
    : master_(checked(open("/dev/ptmx", O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))) {
    checked(unlockpt(master_));
    std::array<char, 64> name{};
    checked(-ptsname_r(master_, name.data(), name.size()));
    file_ = name.data();
    slave_ = checked(open(file_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    notifier_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    QObject::connect(
        notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { take(); });
}

ProgramTerminal::~ProgramTerminal() {
    notifier_.reset();
    close(slave_);
    close(master_);
}

void ProgramTerminal::type(std::string_view keys) const {
    EXPECT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

termios ProgramTerminal::modes() const {
    termios modes{};
    checked(tcgetattr(slave_, &modes));
    return modes;
}

void ProgramTerminal::take() {
    std::array<char, 4096> block{};
    for (ssize_t count = 0; (count = read(master_, block.data(), block.size())) > 0;) {
        written_.append(block.data(), static_cast<std::size_t>(count));
    }
}

} // namespace velmora
