// StoreProblemText.h: tells the user what happened to the settings file.
#pragma once

#include <string>

namespace velmora {

class AppSettings;
struct StoreProblem;

/// One or two sentences in the user's language, with the paths that he needs to find his data.
[[nodiscard]] std::string storeProblemText(const StoreProblem& problem,
                                           const AppSettings& settings);

} // namespace velmora
