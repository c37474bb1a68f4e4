#include "settings/SourceTexts.h"

#include <array>
#include <cctype>
#include <fstream>
#include <iterator>
#include <string_view>

namespace velmora {
namespace {

constexpr std::array lookups{"t(", "text(", "lookup(", "lookup_(", "say(", "header("};

class Reader {
public:
    Reader(std::string code, SourceTexts& into) : code_(std::move(code)), into_(into) {}

    void read() {
        while (at_ < code_.size()) {
            if (startsWith("//") || startsWith("#include")) {
                skipTo('\n');
            } else if (startsWith("'\\") || startsWith("'\"'")) { // a single letter, not a string
                skipTo('\'');
            } else if (code_[at_] == '"') {
                keep(strings());
            } else {
                ++at_;
            }
        }
    }

private:
    [[nodiscard]] bool startsWith(std::string_view word) const {
        return std::string_view(code_).substr(at_).starts_with(word);
    }
    void skipTo(char end) {
        at_ = code_.find(end, at_ + 1);
        at_ = at_ == std::string::npos ? code_.size() : at_ + 1;
    }
    void skipSpace() {
        while (at_ < code_.size() && std::isspace(static_cast<unsigned char>(code_[at_])) != 0) {
            ++at_;
        }
    }

    /// What stands here and right after it.
    std::string strings() {
        before_ = std::string_view(code_).substr(0, at_);
        std::string text;
        while (at_ < code_.size() && code_[at_] == '"') {
            for (++at_; at_ < code_.size() && code_[at_] != '"'; ++at_) {
                at_ += code_[at_] == '\\' ? 1 : 0;
                text += code_[at_];
            }
            ++at_;
            skipSpace();
        }
        return text;
    }

    void keep(const std::string& text) {
        into_.all.insert(text);
        for (const std::string_view lookup : lookups) {
            if (before_.ends_with(lookup) && !isPartOfAName(before_.size() - lookup.size())) {
                into_.lookedUp.insert(text);
            }
        }
    }
    /// Whether what ends there goes on: `t(` in `at(`.
    [[nodiscard]] bool isPartOfAName(std::size_t end) const {
        const auto last = static_cast<unsigned char>(end > 0 ? before_[end - 1] : ' ');
        return std::isalnum(last) != 0 || last == '_';
    }

    std::string code_;
    SourceTexts& into_;
    std::size_t at_ = 0;
    std::string_view before_; // the string that was read last
};

} // namespace

SourceTexts textsBelow(const std::filesystem::path& folder) {
    SourceTexts texts;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const auto kind = entry.path().extension();
        const bool isTable = entry.path().filename().string().ends_with("Texts.cpp") &&
                             entry.path().parent_path().filename() == "settings";
        if (!isTable && (kind == ".cpp" || kind == ".h" || kind == ".qml")) {
            std::ifstream file(entry.path());
            Reader(std::string(std::istreambuf_iterator<char>(file), {}), texts).read();
        }
    }
    return texts;
}

} // namespace velmora
