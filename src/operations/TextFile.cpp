#include "operations/TextFile.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

std::optional<std::string> readTextFile(const fs::path& file, std::size_t most) {
    std::error_code unknown;
    // A pipe would be waited for.
    if (!fs::is_regular_file(file, unknown) || fs::file_size(file, unknown) > most) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    return stream.is_open() && !stream.bad() ? std::optional(std::move(text)) : std::nullopt;
}

bool writeTextFile(const fs::path& file, std::string_view text) {
    std::error_code failure;
    if (fs::exists(file, failure) && !fs::is_regular_file(file, failure)) {
        return false;
    }
    fs::path fresh = file;
    fresh += ".part";
    {
        std::ofstream stream(fresh, std::ios::binary);
        stream << text;
        stream.close();
        if (!stream) {
            fs::remove(fresh, failure);
            return false;
        }
    }
    fs::rename(fresh, file, failure);
    if (failure) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
    }
    return !failure;
}

} // namespace velmora
