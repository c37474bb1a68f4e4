#include "app/RendererChoice.h"

#include "platform/simulated/SimulatedPlatform.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace velmora {
namespace {

constexpr auto card = "Mesa Intel(R) UHD Graphics 620 (KBL GT2), 4.6 Mesa 22.3.6";

TEST(RendererFor, LeavesTheWindowsToTheProcessorWhereNoCardDraws) {
    for (const char* name :
         {"",
          "llvmpipe (LLVM 15.0.6, 256 bits), 4.5 Mesa 22.3.6",
          "softpipe, 3.3 Mesa 22.3.6",
          "Mesa DRI swrast, 2.1",
          "Software Rasterizer, 2.1 Mesa 10.1",
          "ANGLE (Google, Vulkan 1.3.0 (SwiftShader Device), SwiftShader), 3.0"}) {
        EXPECT_EQ(rendererFor(name, 2), Renderer::processor) << name;
    }
}

TEST(RendererFor, TakesACard) {
    for (const char* name : {card,
                             "AMD Radeon Graphics (renoir, LLVM 15.0.6, DRM 3.49), 4.6 Mesa 22.3.6",
                             "NVIDIA GeForce RTX 3060/PCIe/SSE2, 4.6.0 NVIDIA 525.147.05",
                             "V3D 4.2, 3.1 Mesa 22.3.6",
                             "virgl (AMD Radeon), 4.3 Mesa 22.3.6"}) {
        EXPECT_EQ(rendererFor(name, 2), Renderer::graphicsCard) << name;
    }
}

TEST(RendererFor, LeavesTheWindowsToTheProcessorWhereAPointIsNoWholeNumberOfPixels) {
    for (const double pixels : {1.25, 1.5, 1.75, 2.4}) {
        EXPECT_EQ(rendererFor(card, pixels), Renderer::processor) << pixels;
    }
    for (const double pixels : {1.0, 2.0, 3.0}) {
        EXPECT_EQ(rendererFor(card, pixels), Renderer::graphicsCard) << pixels;
    }
}

std::function<std::string()> saying(std::string_view name) {
    return [name] { return std::string(name); };
}

class RendererChoiceTest : public testing::Test {
protected:
    Renderer choiceAtStart(std::string_view name) {
        return RendererChoice(machine.defaults).choose(saying(name), 1);
    }

    SimulatedPlatform machine;
};

TEST_F(RendererChoiceTest, KeepsACardThatHasDrawn) {
    RendererChoice first(machine.defaults);
    EXPECT_EQ(first.choose(saying(card), 1), Renderer::graphicsCard);
    EXPECT_TRUE(first.isOnTrial());
    first.succeed();
    EXPECT_FALSE(first.isOnTrial());
    EXPECT_EQ(choiceAtStart(card), Renderer::graphicsCard);
}

TEST_F(RendererChoiceTest, ReturnsToTheProcessorAfterAStartThatShowedNoPicture) {
    EXPECT_EQ(choiceAtStart(card), Renderer::graphicsCard);
    EXPECT_EQ(choiceAtStart(card), Renderer::processor);
    EXPECT_EQ(choiceAtStart(card), Renderer::processor);
}

TEST_F(RendererChoiceTest, StaysThereWhenTheProcessorHasDrawn) {
    EXPECT_EQ(choiceAtStart(card), Renderer::graphicsCard);
    RendererChoice second(machine.defaults);
    EXPECT_EQ(second.choose(saying(card), 1), Renderer::processor);
    second.succeed();
    EXPECT_EQ(choiceAtStart(card), Renderer::processor);
}

TEST_F(RendererChoiceTest, TriesAnotherDriverAnew) {
    EXPECT_EQ(choiceAtStart(card), Renderer::graphicsCard);
    EXPECT_EQ(choiceAtStart("Mesa Intel(R) UHD Graphics 620 (KBL GT2), 4.6 Mesa 23.1.0"),
              Renderer::graphicsCard);
}

TEST_F(RendererChoiceTest, DoesNotAskADriverAgainThatNeverAnswered) {
    Renderer meanwhile = Renderer::graphicsCard;
    RendererChoice first(machine.defaults);
    static_cast<void>(first.choose(
        [&] {
            meanwhile = choiceAtStart(card); // as if this start ended here
            return std::string(card);
        },
        1));
    EXPECT_EQ(meanwhile, Renderer::processor);
}

TEST_F(RendererChoiceTest, RemembersWhatFailedWhileTheProcessorDraws) {
    EXPECT_EQ(choiceAtStart(card), Renderer::graphicsCard);
    EXPECT_EQ(choiceAtStart("llvmpipe"), Renderer::processor);
    EXPECT_EQ(choiceAtStart(card), Renderer::processor);
}

TEST_F(RendererChoiceTest, KeepsNothingWhereThereIsNoCard) {
    EXPECT_EQ(choiceAtStart(""), Renderer::processor);
    EXPECT_EQ(machine.defaults.get("rendererOnTrial"), std::nullopt);
}

} // namespace
} // namespace velmora
