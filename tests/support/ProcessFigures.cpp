#include "support/ProcessFigures.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>

namespace velmora::support {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(pid_t process) {
    return fs::path("/proc") / std::to_string(process);
}

/// The number behind a label in a status file.
std::int64_t numberAfter(const fs::path& file, const std::string& label) {
    std::ifstream in(file);
    for (std::string word; in >> word;) {
        if (word == label) {
            std::int64_t number = 0;
            in >> number;
            return number;
        }
    }
    return 0;
}

} // namespace

std::int64_t residentBytes(pid_t process) {
    return 1024 * numberAfter(folderOf(process) / "status", "VmRSS:");
}

std::int64_t openDescriptors(pid_t process) {
    std::error_code gone;
    return std::distance(fs::directory_iterator(folderOf(process) / "fd", gone), {});
}

std::int64_t sleeps(pid_t process) {
    std::int64_t sum = 0;
    std::error_code gone;
    for (const auto& thread : fs::directory_iterator(folderOf(process) / "task", gone)) {
        sum += numberAfter(thread.path() / "status", "voluntary_ctxt_switches:");
    }
    return sum;
}

double processorSeconds(pid_t process) {
    double sum = 0;
    for (const auto& [name, seconds] : threadSeconds(process)) {
        sum += seconds;
    }
    return sum;
}

std::map<std::string, double> threadSeconds(pid_t process) {
    std::map<std::string, double> all;
    std::error_code gone;
    for (const auto& thread : fs::directory_iterator(folderOf(process) / "task", gone)) {
        std::string name = "main";
        if (thread.path().filename() != std::to_string(process)) {
            std::getline(std::ifstream(thread.path() / "comm"), name);
        }
        std::int64_t nanoseconds = 0;
        std::ifstream(thread.path() / "schedstat") >> nanoseconds;
        all[name] += 1e-9 * static_cast<double>(nanoseconds);
    }
    return all;
}

void returnFreedMemory() {
    malloc_trim(0);
}

} // namespace velmora::support
