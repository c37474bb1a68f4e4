// WavFile.h: sound in a file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace velmora::support {

/// Shape: interleaved, `channels` × frames floats.
struct Sound {
    std::vector<float> samples;
    std::uint32_t channels = 2;
    std::uint32_t rateHz = 48000;

    [[nodiscard]] std::size_t frames() const {
        return channels == 0 ? 0 : samples.size() / channels;
    }
    /// One channel (from 0) of `count` frames from `first` on; shortened at the sound's end.
    [[nodiscard]] std::vector<float>
    channel(std::uint32_t index, std::size_t first = 0, std::size_t count = SIZE_MAX) const;
};

/// 32-bit float samples. Errors: throws std::runtime_error when the file cannot be written.
void writeWav(const std::filesystem::path& file, const Sound& sound);

/// Reads 16-bit and 32-bit integer and 32-bit float files. A file whose writer was stopped before
/// it could complete the header is read to its end.
/// Errors: throws std::runtime_error when the file is missing or of another kind.
[[nodiscard]] Sound readWav(const std::filesystem::path& file);

} // namespace velmora::support
