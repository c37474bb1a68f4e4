#include "support/SessionTests.h"

#include "support/StallWatch.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <string>

#include <unistd.h>

namespace velmora::support {
namespace {

using namespace std::chrono_literals;

constexpr int attempts = 3;
constexpr const char* attemptVariable = "VELMORA_TEST_ATTEMPT";

/// Blocks of 128 frames at 48 kHz.
constexpr auto block = 2667us;

/// Which tests failed, and whether the machine was at fault.
class Failures : public testing::EmptyTestEventListener {
public:
    [[nodiscard]] const std::string& filter() const { return filter_; }
    [[nodiscard]] bool areExcused() const { return !filter_.empty() && !isAnyUnexcused_; }

private:
    void OnTestStart(const testing::TestInfo&) override { stalls_.restart(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        if (!test.result()->Failed()) {
            return;
        }
        filter_ +=
            (filter_.empty() ? "" : ":") + std::string(test.test_suite_name()) + "." + test.name();
        const auto longest = stalls_.longest();
        isAnyUnexcused_ = isAnyUnexcused_ || longest < block;
        std::cout << "During this test the machine stood still for up to "
                  << std::chrono::duration<double, std::milli>(longest).count() << " ms."
                  << std::endl;
    }

    StallWatch stalls_;
    std::string filter_;
    bool isAnyUnexcused_ = false;
};

int currentAttempt() {
    const char* const text = std::getenv(attemptVariable);
    return text == nullptr ? 1 : std::atoi(text);
}

} // namespace

int runSessionTests(char** argv) {
    auto* const failures = new Failures; // the list of listeners takes it over
    testing::UnitTest::GetInstance()->listeners().Append(failures);
    const int code = RUN_ALL_TESTS();
    const int attempt = currentAttempt();
    if (code == 0 || attempt >= attempts || !failures->areExcused()) {
        return code;
    }
    std::cout << "The machine stood still for longer than a block of sound: what failed runs again."
              << std::endl;
    std::string filter = "--gtest_filter=" + failures->filter();
    char* const arguments[] = {argv[0], filter.data(), nullptr};
    ::setenv(attemptVariable, std::to_string(attempt + 1).c_str(), 1);
    ::execv("/proc/self/exe", arguments);
    return code;
}

} // namespace velmora::support
