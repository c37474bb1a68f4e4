// SourceTexts.h: the texts that the sources hold.
#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace velmora {

struct SourceTexts {
    std::set<std::string> all;      ///< every string
    std::set<std::string> lookedUp; ///< what is given to a lookup where it stands
};

/// Reads every .cpp, .h and .qml file below `folder`. Strings that follow each other are one, as
/// for the compiler; comments and includes hold none.
[[nodiscard]] SourceTexts textsBelow(const std::filesystem::path& folder);

} // namespace velmora
