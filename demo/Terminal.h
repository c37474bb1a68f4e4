// Terminal.h: the terminal that the program was started in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <termios.h>

namespace velmora {

/// Takes the terminal over for whole-screen drawing and gives it back as it was when destroyed.
/// When standard output is no terminal nothing is taken over and `draw` prints nothing.
/// Threads: main.
class Terminal {
public:
    Terminal();
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    [[nodiscard]] bool isInteractive() const { return interactive_; }
    [[nodiscard]] int columns() const;

    /// Replaces what is shown.
    void draw(const std::vector<std::string>& lines);

    /// The bytes that were typed and not read yet; never waits.
    [[nodiscard]] std::string takeInput();

private:
    void write(std::string_view text);

    bool interactive_ = false;
    termios before_{};
};

} // namespace velmora
