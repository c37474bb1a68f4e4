// velmora_private_session: runs a command in a private audio session and ends with its status.
//
// velmora_private_session <command> [<argument>...]

#include "support/PrivateSession.h"
#include "support/SessionDevices.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <unistd.h>

int main(int argc, char** argv) {
    using namespace velmora::support;
    if (argc < 2) {
        std::cerr << "usage: velmora_private_session <command> [<argument>...]\n";
        return 2;
    }
    try {
        const PrivateSession session({.devices = {speakers, interface4}});
        // A command at a terminal stays in the terminal's foreground group.
        const bool interactive = isatty(STDIN_FILENO) != 0;
        ChildProcess command({.arguments = {argv + 1, argv + argc},
                              .environment = session.environment(),
                              .processGroup = interactive ? -1 : session.processGroup(),
                              .keepsStdin = true});
        while (command.isRunning()) {
            static_cast<void>(command.wait(std::chrono::hours(1)));
        }
        return command.wait(std::chrono::milliseconds(0)).value_or(1);
    } catch (const std::exception& error) {
        std::cerr << "velmora_private_session: " << error.what() << '\n';
        return 1;
    }
}
