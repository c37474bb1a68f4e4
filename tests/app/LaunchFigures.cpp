// How long the program takes from its launch to its tray item, how much memory it holds with its
// window open on the software renderer, and how often it wakes up at rest. Not a test: prints the
// figures.

#include "app/DesktopRig.h"
#include "support/ClientPrograms.h"
#include "support/ProcessFigures.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <iostream>
#include <thread>
#include <vector>

namespace velmora {
namespace {

using namespace support;

class LaunchFigures : public DesktopRig {
protected:
    /// How often a thread of the program wakes up per second, over ten seconds.
    static double wakeUps(const ChildProcess& program) {
        using namespace std::chrono_literals;
        std::this_thread::sleep_for(3s); // until what just happened has settled
        const std::int64_t before = sleeps(program.pid());
        std::this_thread::sleep_for(10s);
        return static_cast<double>(sleeps(program.pid()) - before) / 10;
    }
    /// How the kernel splits it: what is the program's own, and what files are.
    static std::string memoryOf(pid_t process) {
        return "/proc/" + std::to_string(process) + "/smaps_rollup";
    }
};

TEST_F(LaunchFigures, OfTenLaunches) {
    constexpr int launches = 10;
    std::vector<double> milliseconds;
    std::int64_t resident = 0; // bytes
    for (int i = 0; i < launches; ++i) {
        FakePanel panel(busAddress());
        const auto begun = std::chrono::steady_clock::now();
        ChildProcess program = launch();
        ASSERT_TRUE(waitUntil([&] { return panel.hasItem(); }));
        const std::chrono::duration<double, std::milli> passed =
            std::chrono::steady_clock::now() - begun;
        milliseconds.push_back(passed.count());
        panel.click();
        ASSERT_TRUE(showsSoon("Velmora"));
        resident = std::max(resident, residentBytes(program.pid()));
        panel.choose("Quitter Velmora");
        program.wait(patience);
    }
    std::ranges::sort(milliseconds);
    std::cout << "launch to tray item: median " << milliseconds[launches / 2] << " ms, worst "
              << milliseconds.back()
              << " ms\nresident with the window open: " << resident / (1 << 20) << " MiB\n";
}

TEST_F(LaunchFigures, OfAProgramAtRest) {
    FakePanel panel(busAddress());
    keepActivePreset();
    ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return panel.hasItem(); }));
    std::cout << "wake-ups per second before the window was opened: " << wakeUps(program);

    panel.click();
    ASSERT_TRUE(showsSoon("Velmora"));
    close("Velmora");
    ASSERT_TRUE(hidesSoon("Velmora"));
    std::cout << "\nafter it was closed: " << wakeUps(program);

    panel.click();
    ASSERT_TRUE(showsSoon("Velmora"));
    toggleMix();
    std::this_thread::sleep_for(std::chrono::seconds(2));
    toggleMix();
    close("Velmora");
    ASSERT_TRUE(hidesSoon("Velmora"));
    std::cout << "\nafter the mix ran and stopped: " << wakeUps(program) << '\n';
}

TEST_F(LaunchFigures, OfAMixWithItsWindow) {
    const ToneApp app(session());
    app.play("music", 440, 440, -20);
    FakePanel panel(busAddress());
    ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return panel.hasItem(); }));
    panel.click();
    ASSERT_TRUE(showsSoon("Velmora"));
    command({"add", playing(app.pid())});
    command({"on"});
    std::cout << "resident with the window open and one source in a running mix:";
    for (int look = 0; look < 3; ++look) {
        std::this_thread::sleep_for(std::chrono::seconds(look == 0 ? 3 : 15));
        std::cout << ' ' << static_cast<double>(residentBytes(program.pid())) / (1 << 20) << " MiB";
    }
    std::cout << '\n' << runToEnd({"cat", memoryOf(program.pid())}, environment());
}

} // namespace
} // namespace velmora
