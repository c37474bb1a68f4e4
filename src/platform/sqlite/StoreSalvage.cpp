#include "platform/sqlite/StoreSalvage.h"

#include "platform/sqlite/PrivateCopy.h"
#include "platform/sqlite/StoreConnection.h"
#include "platform/sqlite/StoreFile.h"
#include "platform/sqlite/StorePages.h"

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Rows by key; of two with one key the first counts.
class Salvage {
public:
    void add(std::vector<StoredRow> found) {
        for (StoredRow& row : found) {
            if (keys_.insert(row.key).second) {
                rows_.push_back(std::move(row));
            }
        }
    }
    [[nodiscard]] std::vector<StoredRow> take() { return std::move(rows_); }

private:
    std::set<std::string> keys_;
    std::vector<StoredRow> rows_;
};

Status fill(const fs::path& path, const std::vector<StoredRow>& rows) {
    const StoreFile file(path);
    if (const Status status = file.createIfMissing(); status != statusOk) {
        return status;
    }
    auto connection = StoreConnection::open(path);
    if (!connection) {
        return connection.error();
    }
    Status status = connection->begin();
    for (auto row = rows.begin(); row != rows.end() && status == statusOk; ++row) {
        status = connection->put(*row);
    }
    if (status == statusOk) {
        status = connection->commit();
    }
    return status == statusOk ? connection->foldLog() : status;
}

} // namespace

std::vector<StoredRow> salvageRows(const StoreFile& file) {
    Salvage salvage;
    // Before SQLite opens the copy: it throws away a log beside an empty file.
    std::string main = contentOf(file.path());
    std::string log = contentOf(file.log());
    if (const PrivateCopy copy(file); copy.exists()) {
        if (auto database = Database::open(copy.path())) {
            for (const char* order : {"ASC", "DESC"}) {
                auto read = readRows(*database, order);
                salvage.add(std::move(read.rows));
                if (read.status == statusOk) {
                    return salvage.take();
                }
            }
        }
    }
    salvage.add(rowsInPages(main, log));
    return salvage.take();
}

StatusOr<fs::path> replaceDamaged(const StoreFile& file,
                                  const std::vector<StoredRow>& rows,
                                  std::chrono::system_clock::time_point now) {
    file.removeSuccessor();
    if (const Status status = fill(file.successor(), rows); status != statusOk) {
        file.removeSuccessor();
        return std::unexpected(status);
    }
    return file.giveWayToSuccessor(now);
}

} // namespace velmora
