// How long a command takes with its own start, and what a hundred D-Bus calls a second cost a mix.
// Not a test: prints the figures.

#include "app/CommandRig.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iostream>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <QDBusConnection>
#include <QDBusMessage>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using namespace support;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double hz = 2300;
constexpr double playedDb = -20;

void print(const std::string& what, std::vector<double> milliseconds) {
    std::ranges::sort(milliseconds);
    const auto below = [&](std::size_t percent) {
        return milliseconds[(milliseconds.size() - 1) * percent / 100];
    };
    std::cout << what << ": shortest " << below(0) << " ms, median " << below(50)
              << " ms, 90 % below " << below(90) << " ms, longest " << below(100) << " ms"
              << std::endl;
}

class CommandFigures : public CommandRig {
protected:
    static void SetUpTestSuite() { beginInTime({.devices = {speakers, interface4}}); }
};

TEST_F(CommandFigures, OfSixtyCommands) {
    ChildProcess mixer = headless();
    const Environment variables = environment();
    std::vector<std::string> texts;
    for (const auto& [name, value] : variables) {
        texts.push_back(name + "=" + value);
    }
    std::vector<char*> environ;
    for (std::string& text : texts) {
        environ.push_back(text.data());
    }
    environ.push_back(nullptr);
    posix_spawn_file_actions_t quietly;
    posix_spawn_file_actions_init(&quietly);
    posix_spawn_file_actions_addopen(&quietly, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    for (const char* word : {"--version", "status", "names"}) {
        std::vector<double> taken;
        std::string program = VELMORA_PROGRAM;
        std::string first = word;
        std::string second = "sources";
        char* const arguments[] = {
            program.data(), first.data(), first == "names" ? second.data() : nullptr, nullptr};
        for (int run = 0; run < 60; ++run) {
            pid_t child = 0;
            int status = 0;
            const auto begun = std::chrono::steady_clock::now();
            ASSERT_EQ(
                posix_spawn(&child, program.c_str(), &quietly, nullptr, arguments, environ.data()),
                0);
            ASSERT_EQ(waitpid(child, &status, 0), child);
            taken.push_back(Milliseconds(std::chrono::steady_clock::now() - begun).count());
            EXPECT_EQ(status, 0);
        }
        print("velmora " + first, taken);
    }
    posix_spawn_file_actions_destroy(&quietly);
}

TEST_F(CommandFigures, OfAMinuteWithAHundredCallsASecond) {
    const ToneApp app(session());
    app.play("music", hz, hz, playedDb);
    const Recorder mic(session(), microphone, {1});
    const Recorder direct(session(), speakers.name, {1});
    monitorOnTheInterface();
    ChildProcess mixer = headless();
    command({"add", playing(app.pid())});
    command({"on"});
    ASSERT_TRUE(mic.hears(0, hz, playedDb));
    auto bus = QDBusConnection::connectToBus(
        QString::fromStdString(environment().at("DBUS_SESSION_BUS_ADDRESS")), "figures");

    for (const bool calls : {false, true}) {
        const std::size_t mixedBefore = mic.frames();
        const std::size_t directBefore = direct.frames();
        std::vector<double> taken;
        const auto begun = std::chrono::steady_clock::now();
        auto next = begun;
        for (int number = 0; number < 6000; ++number) {
            next += 10ms;
            std::this_thread::sleep_until(next);
            if (!calls) {
                continue;
            }
            auto message = QDBusMessage::createMethodCall("app.velmora.Velmora",
                                                          "/app/velmora/Velmora/Mixer",
                                                          "app.velmora.Mixer1",
                                                          "SetVolume");
            message << "headphones" << -static_cast<double>(number % 12);
            const auto asked = std::chrono::steady_clock::now();
            EXPECT_EQ(bus.call(message).type(), QDBusMessage::ReplyMessage);
            taken.push_back(Milliseconds(std::chrono::steady_clock::now() - asked).count());
        }
        const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - begun;
        // What the machine itself lost is lost to the application's own link as well.
        std::cout << (calls ? "with calls: " : "without calls: ") << lasted.count()
                  << " s, breaks: " << countBreaks(direct.all().channel(0, directBefore), hz)
                  << " in the direct link, " << countBreaks(mic.all().channel(0, mixedBefore), hz)
                  << " in the mix" << std::endl;
        if (calls) {
            print("a call", taken);
        }
    }
    QDBusConnection::disconnectFromBus("figures");
}

} // namespace
} // namespace velmora
