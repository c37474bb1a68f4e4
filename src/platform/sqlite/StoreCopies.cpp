#include "platform/sqlite/StoreCopies.h"

#include "platform/sqlite/StoreConnection.h"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t keptCopies = 7;
constexpr std::string_view copyMark = "-copy-";
constexpr std::size_t dayLength = 10; // "2025-03-14"

/// Makes the copy under another name first, so that what has the name is whole.
Status copyTo(StoreConnection& connection, const fs::path& target) {
    fs::path part = target;
    part += "-part";
    std::error_code error;
    fs::remove(part, error);
    // SQLite would make the file with everybody's rights.
    Status status = StoreFile(part).createIfMissing();
    if (status == statusOk) {
        status = connection.copyTo(part);
    }
    if (status == statusOk) {
        status = moveSynced(part, target);
    }
    if (status != statusOk) {
        fs::remove(part, error);
    }
    return status;
}

} // namespace

fs::path StoreCopies::named(const std::string& ending) const {
    return file_.parent_path() / (file_.stem().string() + ending + file_.extension().string());
}

std::vector<StoreCopies::Copy> StoreCopies::all() const {
    const std::string begin = file_.stem().string() + std::string(copyMark);
    const std::string end = file_.extension().string();
    std::vector<Copy> copies;
    std::error_code error;
    for (auto entry = fs::directory_iterator(file_.parent_path(), error);
         !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.size() == begin.size() + dayLength + end.size() && name.starts_with(begin) &&
            name.ends_with(end)) {
            copies.push_back({name.substr(begin.size(), dayLength), entry->path()});
        }
    }
    std::ranges::sort(copies, {}, &Copy::day);
    return copies;
}

std::optional<StoreCopies::Copy> StoreCopies::latest() const {
    const auto copies = all();
    return copies.empty() ? std::nullopt : std::optional(copies.back());
}

void StoreCopies::makeOncePerDay(StoreConnection& connection,
                                 std::chrono::system_clock::time_point now) {
    // A day begins with a minute everywhere, and asking for the local one is dear.
    const auto minute = std::chrono::floor<std::chrono::minutes>(now);
    if (minute == lookedAt_) {
        return;
    }
    lookedAt_ = minute;
    const std::string today = dayOf(now);
    if (today == lookedOn_) {
        return;
    }
    lookedOn_ = today;
    // A file that has just begun would only take the place of a copy that has something.
    const fs::path target = named(std::string(copyMark) + today);
    std::error_code error;
    if (fs::exists(target, error) || !connection.hasRows() ||
        copyTo(connection, target) != statusOk) {
        return;
    }
    const auto copies = all();
    for (std::size_t old = 0; old + keptCopies < copies.size(); ++old) {
        fs::remove(copies[old].file, error);
    }
}

Status StoreCopies::keepReplaced(StoreConnection& connection,
                                 std::chrono::system_clock::time_point now) const {
    const std::string first = "-replaced-" + dayOf(now);
    fs::path target = named(first);
    std::error_code error;
    for (int count = 2; fs::exists(target, error); ++count) {
        target = named(first + "-" + std::to_string(count));
    }
    return copyTo(connection, target);
}

} // namespace velmora
