#include "support/WavFile.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora::support {
namespace {

// Format tags of the WAVE format chunk.
constexpr std::uint16_t integerFormat = 1;
constexpr std::uint16_t floatFormat = 3;
constexpr std::uint16_t extensibleFormat = 0xFFFE;

struct Format {
    std::uint16_t tag{};
    std::uint16_t channels{};
    std::uint32_t rateHz{};
    std::uint16_t bits{};
};

template <typename T>
void append(std::string& bytes, T value) {
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.append(raw, sizeof value);
}

template <typename T>
T take(std::string_view bytes, std::size_t offset) {
    if (offset + sizeof(T) > bytes.size()) {
        throw std::runtime_error("a WAV chunk is cut off");
    }
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

Format parseFormat(std::string_view chunk) {
    Format format{.tag = take<std::uint16_t>(chunk, 0),
                  .channels = take<std::uint16_t>(chunk, 2),
                  .rateHz = take<std::uint32_t>(chunk, 4),
                  .bits = take<std::uint16_t>(chunk, 14)};
    if (format.tag == extensibleFormat) {
        format.tag = take<std::uint16_t>(chunk, 24); // the sub-format begins with the plain tag
    }
    return format;
}

template <typename T>
std::vector<float> toFloats(std::string_view data, float fullScale) {
    std::vector<float> samples(data.size() / sizeof(T));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(take<T>(data, i * sizeof(T))) / fullScale;
    }
    return samples;
}

std::vector<float> toFloats(std::string_view data, const Format& format) {
    if (format.tag == floatFormat && format.bits == 32) {
        return toFloats<float>(data, 1.0F);
    }
    if (format.tag == integerFormat && format.bits == 16) {
        return toFloats<std::int16_t>(data, 0x1p15F);
    }
    if (format.tag == integerFormat && format.bits == 32) {
        return toFloats<std::int32_t>(data, 0x1p31F);
    }
    throw std::runtime_error("a WAV file of an unknown sample format");
}

} // namespace

std::vector<float> Sound::channel(std::uint32_t index, std::size_t first, std::size_t count) const {
    std::vector<float> result;
    const std::size_t end = std::min(frames(), first + std::min(count, frames()));
    for (std::size_t frame = first; frame < end; ++frame) {
        result.push_back(samples[frame * channels + index]);
    }
    return result;
}

void writeWav(const std::filesystem::path& file, const Sound& sound) {
    const auto dataBytes = static_cast<std::uint32_t>(sound.samples.size() * sizeof(float));
    const auto frameBytes = static_cast<std::uint16_t>(sound.channels * sizeof(float));
    std::string bytes = "RIFF";
    append(bytes, static_cast<std::uint32_t>(36 + dataBytes)); // what follows in the file
    bytes += "WAVEfmt ";
    append(bytes, std::uint32_t{16}); // size of the format chunk
    append(bytes, floatFormat);
    append(bytes, static_cast<std::uint16_t>(sound.channels));
    append(bytes, sound.rateHz);
    append(bytes, sound.rateHz * frameBytes);
    append(bytes, frameBytes);
    append(bytes, std::uint16_t{32}); // bits per sample
    bytes += "data";
    append(bytes, dataBytes);
    bytes.append(reinterpret_cast<const char*>(sound.samples.data()), dataBytes);

    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

Sound readWav(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::string_view all = bytes;
    if (!all.starts_with("RIFF") || all.substr(8, 4) != "WAVE") {
        throw std::runtime_error(file.string() + " is not a WAV file");
    }
    std::optional<Format> format;
    for (std::size_t at = 12; at + 8 <= all.size();) {
        const std::string_view name = all.substr(at, 4);
        const std::size_t size = take<std::uint32_t>(all, at + 4);
        const std::string_view chunk = all.substr(at + 8, size);
        if (name == "fmt ") {
            format = parseFormat(chunk);
        } else if (name == "data" && format) {
            // 0 stands in a header that its writer did not live to complete.
            const auto data = size == 0 ? all.substr(at + 8) : chunk;
            return {.samples = toFloats(data, *format),
                    .channels = format->channels,
                    .rateHz = format->rateHz};
        }
        at += 8 + size + size % 2; // chunks are padded to even sizes
    }
    throw std::runtime_error(file.string() + " holds no sound");
}

} // namespace velmora::support
