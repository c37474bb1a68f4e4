// ProgramTerminal.h: a terminal for a program under test, with the test at its other end.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <termios.h>

#include <QSocketNotifier>

namespace velmora {

/// A pseudo terminal. The event loop reads what a program writes to it, so that the program never
/// has to wait. Threads: main.
class ProgramTerminal {
public:
    /// Errors: throws std::system_error.
    ProgramTerminal();
    ~ProgramTerminal();
    ProgramTerminal(const ProgramTerminal&) = delete;
    ProgramTerminal& operator=(const ProgramTerminal&) = delete;

    /// For the program's standard input and output.
    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

    void type(std::string_view keys) const;
    /// Everything that was written so far.
    [[nodiscard]] const std::string& written() const { return written_; }
    [[nodiscard]] bool shows(std::string_view text) const { return written_.contains(text); }
    [[nodiscard]] termios modes() const;

private:
    void take();

    int master_ = -1;
    int slave_ = -1; // keeps the terminal alive when the program has ended
    std::filesystem::path file_;
    std::string written_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace velmora
