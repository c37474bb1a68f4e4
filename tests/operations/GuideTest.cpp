// The user's guide, against the texts and the commands of the program.

#include "operations/CommandTable.h"
#include "settings/Texts.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iomanip>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmora {
namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string guide(const std::string& language) {
    return textOf(fs::path(DOCUMENTS) / (language == "fr" ? "guide.fr.md" : "guide.md"));
}

/// The first group of every match.
std::vector<std::string> all(const std::string& text, const std::string& pattern) {
    const std::regex wanted(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), wanted), end; match != end; ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

/// Texts that are the same in every language stand in the windows' sources as they are.
std::set<std::string> literals() {
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(UI_SOURCES)) {
        for (std::string& text :
             all(entry.is_regular_file() ? textOf(entry.path()) : "", "\"([^\"\\n]+)\"")) {
            found.insert(std::move(text));
        }
    }
    return found;
}

std::set<std::string> shownIn(const std::string& language) {
    std::set<std::string> shown = literals();
    shown.insert("Auto");
    for (const auto texts : {fixedTexts(), addedTexts()}) {
        for (const auto& [french, english] : texts) {
            shown.erase(std::string(french));
        }
    }
    for (const auto texts : {fixedTexts(), addedTexts()}) {
        for (const auto& [french, english] : texts) {
            shown.emplace(language == "fr" ? french : english);
        }
    }
    return shown;
}

TEST(Guide, WritesInBoldWhatTheWindowSays) {
    for (const std::string language : {"fr", "en"}) {
        const auto shown = shownIn(language);
        const auto labels = all(guide(language), R"(\*\*([^*]+)\*\*)");
        EXPECT_GT(labels.size(), 50U);
        for (std::string label : labels) {
            std::ranges::replace(label, '\n', ' ');
            const bool isSentence = label.ends_with('.') && !shown.contains(label);
            EXPECT_TRUE(shown.contains(isSentence ? label.substr(0, label.size() - 1) : label))
                << language << ": " << label;
        }
    }
}

TEST(Guide, NamesCommandsThatThereAre) {
    for (const std::string language : {"fr", "en"}) {
        const std::string text = guide(language);
        auto lines = all(text, "`velmora ([^`]+)`");
        for (const std::string& line : all(text, "\nvelmora ([^#\n]+)")) {
            lines.push_back(line);
        }
        EXPECT_GT(lines.size(), 10U);
        for (const std::string& line : lines) {
            std::istringstream stream(line);
            std::vector<std::string> words;
            for (std::string word; stream >> std::quoted(word);) {
                words.push_back(word);
            }
            if (words.front().starts_with("--")) {
                EXPECT_TRUE(std::ranges::any_of(optionTable(), [&](const OptionInfo& one) {
                    return one.name == words[0];
                })) << line;
                continue;
            }
            const CommandInfo* const command = commandOf(words);
            ASSERT_NE(command, nullptr) << line;
            const std::size_t arguments = words.size() - nameWords(*command);
            EXPECT_GE(arguments, command->least) << line;
            EXPECT_LE(arguments, command->most) << line;
        }
    }
}

TEST(Guide, ShowsTheSamePicturesInEachLanguage) {
    const std::string pattern = R"re(src="(screenshots/[a-z-]+)-(?:fr|en)\.png")re";
    const auto pictures = all(guide("en"), pattern);

    EXPECT_EQ(all(guide("fr"), pattern), pictures);
    EXPECT_GT(pictures.size(), 10U);
    for (const std::string& picture : pictures) {
        for (const char* language : {"-fr.png", "-en.png"}) {
            EXPECT_TRUE(fs::exists(fs::path(DOCUMENTS) / (picture + language))) << picture;
        }
    }
}

TEST(Guide, LeadsToItsSections) {
    for (const std::string language : {"fr", "en"}) {
        const std::string text = guide(language);
        EXPECT_EQ(all(text, R"(\n\d+\. \[([^\]]+)\]\(#)"), all(text, "\n## ([^\n]+)")) << language;
    }
}

} // namespace
} // namespace velmora
