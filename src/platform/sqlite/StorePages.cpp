#include "platform/sqlite/StorePages.h"

#include "platform/sqlite/DefaultsCoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace velmora {

namespace {

using Number = std::uint32_t;

// All numbers are stored with the most significant byte first. Reads past the end give 0.
std::uint64_t numberAt(std::string_view bytes, std::size_t at, std::size_t length) {
    std::uint64_t number = 0;
    for (std::size_t byte = at; byte < at + length; ++byte) {
        number = number << 8U | (byte < bytes.size() ? static_cast<std::uint8_t>(bytes[byte]) : 0U);
    }
    return number;
}

Number wordAt(std::string_view bytes, std::size_t at) {
    return static_cast<Number>(numberAt(bytes, at, 4));
}

/// Seven bits a byte as long as the highest bit is set, the ninth byte whole.
std::uint64_t takeVarint(std::string_view bytes, std::size_t& at) {
    std::uint64_t number = 0;
    for (int count = 1; at < bytes.size(); ++count) {
        const auto byte = static_cast<std::uint8_t>(bytes[at++]);
        if (count == 9) {
            return number << 8U | byte;
        }
        number = number << 7U | (byte & 0x7FU);
        if ((byte & 0x80U) == 0) {
            return number;
        }
    }
    return number;
}

bool isPageSize(std::uint64_t size) {
    return size >= 512 && size <= 65536 && (size & (size - 1)) == 0;
}

/// The file's pages as the log's transactions have left them.
class Pages {
public:
    Pages(std::string_view file, std::string_view log) : file_(file) {
        constexpr std::size_t inFile = 16;
        constexpr std::size_t inLog = 8;
        const std::uint64_t said = numberAt(file, inFile, 2);
        const std::uint64_t saidByLog = wordAt(log, inLog);
        // The file's header may be what is damaged; SQLite makes pages of 4096 bytes by itself.
        size_ = isPageSize(saidByLog) ? saidByLog : isPageSize(said) ? said : 4096;
        readLog(log);
        findFree();
    }

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::size_t totalBytes() const { return file_.size() + logged_.size() * size_; }
    /// Those that are in use.
    [[nodiscard]] std::set<Number> numbers() const {
        std::set<Number> numbers;
        for (Number number = 1; number <= file_.size() / size_; ++number) {
            numbers.insert(number);
        }
        for (const auto& [number, content] : logged_) {
            numbers.insert(number);
        }
        for (const Number number : free_) {
            numbers.erase(number);
        }
        return numbers;
    }
    /// Counted from 1; empty where there is none.
    [[nodiscard]] std::string_view page(Number number) const {
        if (const auto found = logged_.find(number); found != logged_.end()) {
            return found->second;
        }
        const bool isThere = number >= 1 && number <= file_.size() / size_;
        return isThere ? file_.substr((number - 1) * size_, size_) : std::string_view{};
    }

private:
    /// The log's running checksum, in the byte order that its first word names.
    struct Checksum {
        bool isBigEndian = false;
        Number first = 0;
        Number second = 0;

        void add(std::string_view bytes) {
            for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8) {
                first += word(bytes, at) + second;
                second += word(bytes, at + 4) + first;
            }
        }
        [[nodiscard]] Number word(std::string_view bytes, std::size_t at) const {
            const Number big = wordAt(bytes, at);
            return isBigEndian ? big : __builtin_bswap32(big);
        }
    };

    void readLog(std::string_view log) {
        constexpr std::size_t headerBytes = 32;
        constexpr std::size_t frameHeaderBytes = 24;
        Checksum sum{.isBigEndian = (wordAt(log, 0) & 1U) != 0};
        sum.add(log.substr(0, 24));
        const std::string_view salts = log.substr(std::min(log.size(), std::size_t{16}), 8);
        std::map<Number, std::string_view> open; // of a transaction whose end was not met
        for (std::size_t at = headerBytes; at + frameHeaderBytes + size_ <= log.size();
             at += frameHeaderBytes + size_) {
            const std::string_view header = log.substr(at, frameHeaderBytes);
            const std::string_view page = log.substr(at + frameHeaderBytes, size_);
            sum.add(header.substr(0, 8));
            sum.add(page);
            if (header.substr(8, 8) != salts || wordAt(header, 16) != sum.first ||
                wordAt(header, 20) != sum.second) {
                return;
            }
            open.insert_or_assign(wordAt(header, 0), page);
            if (wordAt(header, 4) != 0) {
                for (const auto& [number, content] : open) {
                    logged_.insert_or_assign(number, content);
                }
                open.clear();
            }
        }
    }

    /// Free pages keep the rows that once were there.
    void findFree() {
        constexpr std::size_t firstTrunk = 32;
        Number trunk = wordAt(page(1), firstTrunk);
        while (trunk != 0 && !page(trunk).empty() && free_.insert(trunk).second) {
            const std::string_view list = page(trunk);
            const std::size_t listed = std::min<std::size_t>(wordAt(list, 4), size_ / 4 - 2);
            for (std::size_t leaf = 0; leaf < listed; ++leaf) {
                free_.insert(wordAt(list, 8 + 4 * leaf));
            }
            trunk = wordAt(list, 0);
        }
    }

    std::string_view file_;
    std::size_t size_;
    std::map<Number, std::string_view> logged_;
    std::set<Number> free_;
};

/// A cell's content, of which a page keeps a part and a chain of pages the rest.
std::optional<std::string> payloadAt(const Pages& pages, std::string_view page, std::size_t at) {
    const std::uint64_t size = takeVarint(page, at);
    const std::size_t usable = pages.size();
    const std::size_t most = (usable - 12) * 64 / 255 - 23;
    const std::size_t least = (usable - 12) * 32 / 255 - 23;
    if (size > pages.totalBytes()) {
        return std::nullopt;
    }
    std::size_t here = size;
    if (size > most) {
        here = least + (size - least) % (usable - 4);
        here = here <= most ? here : least;
    }
    if (at + here > page.size()) {
        return std::nullopt;
    }
    std::string payload(page.substr(at, here));
    Number next = wordAt(page, at + here);
    while (payload.size() < size) {
        const std::string_view rest = pages.page(next);
        if (rest.empty()) {
            return std::nullopt;
        }
        payload += rest.substr(4, size - payload.size());
        next = wordAt(rest, 0);
    }
    return payload;
}

/// A record of a text, a number and a blob.
std::optional<StoredRow> rowIn(std::string_view record) {
    std::size_t at = 0;
    const std::uint64_t headerBytes = takeVarint(record, at);
    const std::uint64_t key = takeVarint(record, at);
    const std::uint64_t type = takeVarint(record, at);
    const std::uint64_t value = takeVarint(record, at);
    // Of the kinds of a column: 1 is a number of one byte and 9 the number 1, in none; texts and
    // blobs are odd and even, and say their length.
    constexpr std::uint64_t one = 9;
    if (at != headerBytes || key < 13 || key % 2 != 1 || (type != 1 && type != one) || value < 12 ||
        value % 2 != 0) {
        return std::nullopt;
    }
    const std::size_t typeBytes = type == one ? 0 : 1;
    const std::size_t keyBytes = (key - 13) / 2;
    const std::size_t valueBytes = (value - 12) / 2;
    if (at + keyBytes + typeBytes + valueBytes != record.size()) {
        return std::nullopt;
    }
    const std::string_view bytes = record.substr(at + keyBytes + typeBytes);
    StoredRow row{
        .key = std::string(record.substr(at, keyBytes)),
        .type =
            type == one ? 1 : static_cast<std::int64_t>(numberAt(record, at + keyBytes, typeBytes)),
        .value = Bytes(bytes.begin(), bytes.end())};
    const bool isOurs = decode(static_cast<CodedValue::Type>(row.type), row.value).has_value();
    return isOurs ? std::optional(std::move(row)) : std::nullopt;
}

void takeRows(const Pages& pages, std::string_view page, std::vector<StoredRow>& rows) {
    constexpr char interior = 0x02;
    constexpr char leaf = 0x0A;
    if (page.empty() || (page[0] != interior && page[0] != leaf)) {
        return;
    }
    const std::size_t headerBytes = page[0] == interior ? 12 : 8;
    const std::size_t childBytes = page[0] == interior ? 4 : 0;
    const std::size_t cells =
        std::min<std::size_t>(numberAt(page, 3, 2), (page.size() - headerBytes) / 2);
    for (std::size_t cell = 0; cell < cells; ++cell) {
        const std::size_t at = numberAt(page, headerBytes + 2 * cell, 2);
        if (const auto payload = payloadAt(pages, page, at + childBytes)) {
            if (auto row = rowIn(*payload)) {
                rows.push_back(std::move(*row));
            }
        }
    }
}

} // namespace

std::vector<StoredRow> rowsInPages(std::string_view file, std::string_view log) {
    const Pages pages(file, log);
    std::vector<StoredRow> rows;
    for (const Number number : pages.numbers()) {
        takeRows(pages, pages.page(number), rows);
    }
    return rows;
}

} // namespace velmora
