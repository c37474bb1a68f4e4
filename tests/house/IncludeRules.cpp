#include "house/IncludeRules.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>
#include <string_view>

namespace velmora {

namespace fs = std::filesystem;

namespace {

struct Include {
    int line = 0;
    std::string written; ///< with its quotes or brackets

    [[nodiscard]] bool isQuoted() const { return written.front() == '"'; }
    [[nodiscard]] std::string header() const { return written.substr(1, written.size() - 2); }
};

bool isSource(const fs::path& file) {
    const std::set<std::string> endings{".h", ".hpp", ".inc", ".c", ".cc", ".cpp"};
    return endings.contains(file.extension());
}

std::vector<Include> includesOf(const fs::path& file) {
    static const std::regex directive(R"(^\s*#\s*include\s*("[^"]*"|<[^>]*>).*)");
    std::vector<Include> includes;
    std::ifstream stream(file);
    std::string text;
    for (int line = 1; std::getline(stream, text); ++line) {
        if (std::smatch match; std::regex_match(text, match, directive)) {
            includes.push_back({line, match[1]});
        }
    }
    return includes;
}

/// The standard library's own: <vector>, <cstdint>.
bool isStandard(const std::string& header) {
    return header.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == header.npos;
}

bool isOf(const Library& library, const std::string& header) {
    return std::ranges::any_of(
        library, [&](const std::string& beginning) { return header.starts_with(beginning); });
}

class Rules {
public:
    explicit Rules(std::span<const Part> parts) {
        for (const Part& part : parts) {
            std::set<std::string> reach{part.path};
            for (const std::string& lower : part.below) {
                const auto known = reach_.find(lower);
                if (known == reach_.end()) {
                    throw std::invalid_argument(part.path + ": " + lower +
                                                " does not stand before it");
                }
                reach.insert(known->second.begin(), known->second.end());
            }
            reach_.emplace(part.path, std::move(reach));
            parts_.emplace(part.path, part);
        }
    }

    /// @param file  from the tree's root
    [[nodiscard]] const Part* partOf(const fs::path& file) const {
        if (const auto part = parts_.find(fs::path(file).replace_extension());
            part != parts_.end()) {
            return &part->second;
        }
        for (auto folder = file.parent_path(); !folder.empty(); folder = folder.parent_path()) {
            if (const auto part = parts_.find(folder); part != parts_.end()) {
                return &part->second;
            }
        }
        return nullptr;
    }

    [[nodiscard]] bool mayInclude(const Part& from, const Part& to) const {
        return reach_.at(from.path).contains(to.path);
    }

private:
    std::map<std::string, Part> parts_;
    std::map<std::string, std::set<std::string>> reach_; // itself and everything below it
};

/// What is wrong with the include, if anything.
std::optional<std::string>
complaint(const fs::path& root, const Rules& rules, const Part& part, const Include& include) {
    const std::string header = include.header();
    if (include.isQuoted()) {
        const Part* const target = rules.partOf(header);
        if (target == nullptr || fs::path(header).lexically_normal() != header ||
            !fs::is_regular_file(root / header)) {
            return include.written + " is no file from the root";
        }
        if (rules.mayInclude(part, *target)) {
            return std::nullopt;
        }
    } else if (isStandard(header) ||
               std::ranges::any_of(part.libraries,
                                   [&](const Library& library) { return isOf(library, header); })) {
        return std::nullopt;
    }
    return part.path + " may not include " + include.written;
}

} // namespace

std::vector<std::string> forbiddenIncludes(const fs::path& root, std::span<const Part> parts) {
    const Rules rules(parts);
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file() || !isSource(entry.path())) {
            continue;
        }
        const fs::path file = entry.path().lexically_relative(root);
        const Part* const part = rules.partOf(file);
        if (part == nullptr) {
            found.push_back(file.string() + ": belongs to no part");
            continue;
        }
        for (const Include& include : includesOf(entry.path())) {
            if (const auto words = complaint(root, rules, *part, include)) {
                found.push_back(file.string() + ":" + std::to_string(include.line) + ": " + *words);
            }
        }
    }
    std::ranges::sort(found);
    return found;
}

} // namespace velmora
