#include "platform/sqlite/KeptText.h"

#include "platform/sqlite/DefaultsCoding.h"

#include <memory>
#include <sqlite3.h>
#include <system_error>

namespace velmora {

namespace {

/// The path as a URI's: what means something else there is written by its number.
std::string uriOf(const std::filesystem::path& file) {
    const std::string path = std::filesystem::absolute(file);
    std::string uri = "file:";
    for (const char byte : path) {
        uri += byte == '%'   ? "%25"
               : byte == '?' ? "%3f"
               : byte == '#' ? "%23"
                             : std::string(1, byte);
    }
    return uri;
}

} // namespace

std::optional<std::string> keptText(const std::filesystem::path& file, std::string_view key) {
    // Without a log nobody is writing, and the file alone says everything; reading it in the usual
    // way would make a log beside it.
    std::error_code unknown;
    std::filesystem::path log = file;
    log += "-wal";
    const bool isAlone = !std::filesystem::exists(log, unknown);
    sqlite3* opened = nullptr;
    const int openCode = sqlite3_open_v2((uriOf(file) + (isAlone ? "?immutable=1" : "")).c_str(),
                                         &opened,
                                         SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
                                         nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> connection(opened, sqlite3_close_v2);
    if (openCode != SQLITE_OK) {
        return std::nullopt;
    }
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(connection.get(),
                       "SELECT value FROM defaults WHERE key=? AND type=?",
                       -1,
                       &prepared,
                       nullptr);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(prepared,
                                                                          sqlite3_finalize);
    if (!statement) {
        return std::nullopt;
    }
    sqlite3_bind_text(
        statement.get(), 1, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
    sqlite3_bind_int64(statement.get(), 2, static_cast<sqlite3_int64>(CodedValue::Type::string));
    if (sqlite3_step(statement.get()) != SQLITE_ROW) {
        return std::nullopt;
    }
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement.get(), 0));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), 0));
    return bytes == nullptr ? std::string() : std::string(bytes, size);
}

} // namespace velmora
