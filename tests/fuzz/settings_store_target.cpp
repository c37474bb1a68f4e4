// The settings file with any bytes in it: it is read, or set aside with every byte, or left alone;
// either way what is set afterwards is there after the next start.
//
// The first byte chooses: an even one, and the rest is the file; an odd one, and the rest is damage
// done to a good file, in pieces of an offset (2 bytes), a length and the bytes.
#include "Require.h"
#include "platform/sqlite/SqliteDefaultsStore.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>

namespace velmora {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

/// As a program that has ended leaves it.
std::string goodFile() {
    const support::TemporaryFolder folder("velmora-fuzz");
    const fs::path path = folder.path() / "settings.sqlite";
    {
        SqliteDefaultsStore store(path);
        store.set("flag", true);
        store.set("volume", 0.25);
        store.set("name", "text");
        store.set("bytes", Bytes(300, 7));
        store.set("numbers", NumberMap{{"one", 1.0}, {"two", 2.0}});
        store.set("flags", BooleanMap{{"yes", true}});
    }
    return contentOf(path);
}

std::string damaged(std::string file, std::span<const std::uint8_t> damage) {
    while (damage.size() >= 3) {
        const std::size_t at = (damage[0] + 256U * damage[1]) % (file.size() + 1);
        const std::size_t length = std::min<std::size_t>(damage[2], damage.size() - 3);
        if (length == 0) {
            file.resize(at); // cut off
        } else {
            const auto piece = damage.subspan(3, length);
            file.replace(at, length, std::string(piece.begin(), piece.end()));
        }
        damage = damage.subspan(3 + length);
    }
    return file;
}

void check(const std::string& file) {
    const support::TemporaryFolder folder("velmora-fuzz");
    const fs::path path = folder.path() / "settings.sqlite";
    write(path, file);
    std::optional<StoreProblem> problem;
    {
        SqliteDefaultsStore store(path);
        const Status status = store.set("fuzzed", 0.5);
        require(store.problems().size() <= 1, "one problem is listed once");
        if (!store.problems().empty()) {
            problem = store.problems().front();
        }
        require((status == statusOk) == (!problem || problem->kind == StoreProblem::Kind::damaged),
                "a write succeeds unless the store is newer, and says so");
        require(store.read<double>("fuzzed") == 0.5, "what was set is there");
    }
    if (!problem) {
        require(SqliteDefaultsStore(path).read<double>("fuzzed") == 0.5,
                "what was set is there after the next start");
    } else if (problem->kind == StoreProblem::Kind::damaged) {
        require(contentOf(problem->setAside) == file, "a damaged file keeps every byte");
        require(SqliteDefaultsStore(path).read<double>("fuzzed") == 0.5,
                "what was set is there after the next start");
    } else {
        require(problem->kind == StoreProblem::Kind::newer, "no other problem arises");
        require(contentOf(path) == file, "a newer file is left alone");
    }
}

} // namespace
} // namespace velmora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    static const std::string good = goodFile();
    if (size == 0) {
        return 0;
    }
    const std::span rest(data + 1, size - 1);
    check(data[0] % 2 == 0 ? std::string(rest.begin(), rest.end()) : damaged(good, rest));
    return 0;
}
