// The program on a machine that has a graphics card, as its driver says. The driver is Mesa's,
// which draws by the processor and is told what to call itself.

#include "app/DesktopRig.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace velmora {
namespace {

using namespace support;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

class CardProgram : public DesktopRig {
protected:
    CardProgram() { keepLook("light", "fr"); }

    [[nodiscard]] Environment environment() const override {
        auto result = DesktopRig::environment();
        result.erase("QT_QUICK_BACKEND");
        result["LIBGL_ALWAYS_SOFTWARE"] = "1";
        result["force_gl_renderer"] = card;
        result["QSG_INFO"] = "1"; // Qt tells who draws
        return result;
    }
    /// On a machine without one the program would not look for a driver.
    [[nodiscard]] ChildProcess launchWithCard(const Environment& environment) const {
        EXPECT_TRUE(hidesSoon("Velmora")) << "an earlier one's";
        std::vector<std::string> arguments = {VELMORA_PROGRAM};
        if (!std::filesystem::exists("/dev/dri")) {
            const std::vector<std::string> within = {"bwrap",
                                                     "--unshare-user",
                                                     "--die-with-parent",
                                                     "--dev-bind",
                                                     "/",
                                                     "/",
                                                     "--dev",
                                                     "/dev",
                                                     "--dir",
                                                     "/dev/dri"};
            arguments.insert(arguments.begin(), within.begin(), within.end());
        }
        return ChildProcess(
            {.arguments = arguments, .environment = environment, .output = home.path() / "output"});
    }
    /// What every launch has said.
    [[nodiscard]] std::string said() const {
        std::ifstream file(home.path() / "output");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// The card that has not drawn yet.
    [[nodiscard]] std::optional<std::string> onTrial() const {
        return settings().read<std::string>("rendererOnTrial");
    }

    static constexpr const char* card = "Northern Lights 9";
    static constexpr const char* byCard = "backend OpenGL";
    static constexpr const char* failure = "Failed to initialize graphics backend for OpenGL";
};

TEST_F(CardProgram, LetsACardDrawItsWindow) {
    const ChildProcess program = launchWithCard(environment());

    ASSERT_TRUE(drawsItsWindowSoon());
    EXPECT_THAT(said(), HasSubstr(byCard));
    EXPECT_TRUE(waitUntil([&] { return !onTrial(); }));
}

TEST_F(CardProgram, StartsAgainWithoutACardThatCannotDrawItsWindow) {
    auto broken = environment();
    broken["LD_PRELOAD"] = VELMORA_BROKEN_CARD;
    {
        ChildProcess program = launchWithCard(broken);

        ASSERT_TRUE(drawsItsWindowSoon());
        EXPECT_THAT(said(), HasSubstr(failure));
        EXPECT_TRUE(program.isRunning()) << "as the same process";
        EXPECT_THAT(onTrial(), Optional(StartsWith(card)));
        press("Velmora", {"ctrl+q"});
        EXPECT_THAT(program.wait(patience), Optional(0));
    }
    const ChildProcess next = launchWithCard(broken);

    ASSERT_TRUE(drawsItsWindowSoon());
    const std::string all = said(); // by both launches
    EXPECT_EQ(all.find(failure), all.rfind(failure)) << "it is not tried again";
}

} // namespace
} // namespace velmora
