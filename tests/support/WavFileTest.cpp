#include "support/WavFile.h"

#include "support/TemporaryFolder.h"

#include <cstdint>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace velmora::support {
namespace {

using ::testing::ElementsAre;
using namespace std::string_literals;

/// A file in a folder of its own with the given bytes.
class WavFile : public ::testing::Test {
protected:
    void writeBytes(const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; }

    TemporaryFolder folder{"velmora-wav"};
    std::filesystem::path file = folder.path() / "sound.wav";
};

/// The header of a stereo file of 16-bit integers at 44.1 kHz.
const std::string header16 = "RIFF\x2C\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0"s
                             "\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0"s;

TEST_F(WavFile, ReadsWhatWasWritten) {
    writeWav(file, {.samples = {0.5F, -0.25F, 1.0F, 0.0F}, .channels = 2, .rateHz = 44100});

    const Sound sound = readWav(file);

    EXPECT_THAT(sound.samples, ElementsAre(0.5F, -0.25F, 1.0F, 0.0F));
    EXPECT_EQ(sound.channels, 2U);
    EXPECT_EQ(sound.rateHz, 44100U);
    EXPECT_THAT(sound.channel(1), ElementsAre(-0.25F, 0.0F));
}

TEST_F(WavFile, ReadsIntegersAsPartsOfFullScale) {
    writeBytes(header16 + "data\x04\0\0\0\0\x40\0\x80"s); // 0x4000 and −0x8000

    EXPECT_THAT(readWav(file).samples, ElementsAre(0.5F, -1.0F));
}

TEST_F(WavFile, SkipsOtherChunksWithTheirPadding) {
    writeBytes(header16 + "note\x03\0\0\0abc\0data\x02\0\0\0\0\x40"s);

    EXPECT_THAT(readWav(file).samples, ElementsAre(0.5F));
}

TEST_F(WavFile, ReadsAnUnfinishedFileToItsEnd) {
    writeBytes(header16 + "data\0\0\0\0\0\x40\0\x40"s);

    EXPECT_THAT(readWav(file).samples, ElementsAre(0.5F, 0.5F));
}

TEST_F(WavFile, RefusesOtherFiles) {
    writeBytes("something else");

    EXPECT_THROW(static_cast<void>(readWav(file)), std::runtime_error);
    EXPECT_THROW(static_cast<void>(readWav(folder.path() / "absent.wav")), std::runtime_error);
}

} // namespace
} // namespace velmora::support
