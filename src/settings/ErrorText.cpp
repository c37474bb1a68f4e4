#include "settings/ErrorText.h"

#include "settings/AppSettings.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr std::string_view afterName = " : ";
constexpr std::string_view beforeStatus = " (err ";

std::string lineText(std::string_view line, const AppSettings& settings) {
    const std::size_t status = line.ends_with(')') ? line.rfind(beforeStatus) : line.npos;
    const std::string_view ending = status == line.npos ? "" : line.substr(status);
    const std::string_view whole = line.substr(0, line.size() - ending.size());
    // A name may hold the separator too; the sentences do not.
    const std::size_t separator = whole.rfind(afterName);
    const std::size_t start = separator == whole.npos ? 0 : separator + afterName.size();
    return std::string(whole.substr(0, start)) + settings.t(whole.substr(start)) +
           std::string(ending);
}

} // namespace

std::string errorText(std::string_view lastError, const AppSettings& settings) {
    std::string text;
    for (std::size_t start = 0; start <= lastError.size();) {
        const std::size_t end = std::min(lastError.find('\n', start), lastError.size());
        text += start == 0 ? "" : "\n";
        text += lineText(lastError.substr(start, end - start), settings);
        start = end + 1;
    }
    return text;
}

} // namespace velmora
