#include "platform/desktop/ProcessStat.h"

#include <array>
#include <charconv>

namespace velmora {

namespace {

template <typename Number>
bool parse(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    // "1234 (name) S 1 …": the name may itself hold spaces and parentheses.
    const auto open = text.find(" (");
    const auto close = text.rfind(") ");
    if (open == std::string_view::npos || close == std::string_view::npos || close < open + 2) {
        return std::nullopt;
    }
    // Fields 3 (state) to 22 (start time).
    std::array<std::string_view, 20> fields;
    std::string_view rest = text.substr(close + 2);
    for (auto& field : fields) {
        const auto end = rest.find_first_of(" \n");
        field = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    }
    ProcessStat stat;
    stat.name = text.substr(open + 2, close - open - 2);
    if (fields[0].size() != 1 || !parse(text.substr(0, open), stat.pid) ||
        !parse(fields[1], stat.parent) || !parse(fields[4], stat.terminal) ||
        !parse(fields[19], stat.startTicks)) {
        return std::nullopt;
    }
    stat.state = fields[0][0];
    return stat;
}

} // namespace velmora
