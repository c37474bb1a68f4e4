#include "platform/sqlite/StoreFixture.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {
namespace {

/// Another process that writes 1, 2, 3, … into the store and acknowledges each.
class Writer {
public:
    Writer(const fs::path& file, std::uint64_t first) {
        std::array<int, 2> pipeEnds{};
        if (pipe(pipeEnds.data()) != 0) {
            throw std::runtime_error("pipe");
        }
        const std::string number = std::to_string(first);
        pid_ = fork();
        if (pid_ == 0) {
            dup2(pipeEnds[1], STDOUT_FILENO);
            execl(VELMORA_STORE_WRITER, "store_writer", file.c_str(), number.c_str(), nullptr);
            _exit(127);
        }
        close(pipeEnds[1]);
        acknowledgements_ = pipeEnds[0];
    }
    ~Writer() { close(acknowledgements_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Waits for the next acknowledgement; false when the writer is gone.
    bool next() { return read(acknowledgements_, &last_, sizeof last_) == sizeof last_; }

    /// Kills it and returns the last number that it acknowledged.
    std::uint64_t kill() {
        ::kill(pid_, SIGKILL);
        while (next()) {
        }
        int status = 0;
        waitpid(pid_, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;
        return last_;
    }

private:
    pid_t pid_ = 0;
    int acknowledgements_ = -1;
    std::uint64_t last_ = 0;
};

/// What the store holds after the numbers up to and including `last`.
std::map<std::string, DefaultsValue> expectedAfter(std::uint64_t last) {
    std::map<std::string, DefaultsValue> expected;
    for (std::uint64_t number = last - 3; number <= last; ++number) {
        const auto value = static_cast<double>(number);
        switch (number % 4) {
        case 0:
            expected["number"] = value;
            break;
        case 1:
            expected["map"] = NumberMap{{"dev-1", value}, {"dev-2", value}};
            break;
        case 2:
            expected["string"] = std::to_string(number);
            break;
        default:
            expected["bytes"] = Bytes(1000 + number % 8000, std::uint8_t(number % 251));
        }
    }
    return expected;
}

std::map<std::string, DefaultsValue> storedIn(const DefaultsStore& store) {
    std::map<std::string, DefaultsValue> stored;
    for (const char* key : {"number", "map", "string", "bytes"}) {
        if (auto value = store.get(key)) {
            stored[key] = std::move(*value);
        }
    }
    return stored;
}

TEST(KilledWriter, LosesNoAcknowledgedWriteAtFiveHundredMoments) {
    constexpr int kills = 500;
    StoreOnDisk disk;
    std::minstd_rand random(20250314);
    std::uint64_t last = 0;

    for (int round = 0; round < kills; ++round) {
        Writer writer(disk.path(), last + 1);
        // Every tenth is killed somewhere in its start, the others somewhere after so many writes.
        const auto writes = round % 10 == 0 ? 0 : 1 + random() % 1000;
        for (std::uint64_t written = 0; written < writes; ++written) {
            ASSERT_TRUE(writer.next());
        }
        // Spreads the kill over the steps of a start and of a write; no expectation hangs on it.
        usleep(static_cast<useconds_t>(random() % 2000));
        last = std::max(last, writer.kill());

        disk.nextLaunch();
        const auto stored = storedIn(disk.store());
        ASSERT_TRUE(disk.problems.empty()) << "kill " << round;
        if (last < 4) {
            continue; // not every key has been written yet
        }
        // The write that was under way may have reached the file as well.
        ASSERT_TRUE(stored == expectedAfter(last) || stored == expectedAfter(last + 1))
            << "kill " << round << " after " << last;
        disk.quit();
    }
    EXPECT_GT(last, 10'000U);
}

} // namespace
} // namespace velmora
