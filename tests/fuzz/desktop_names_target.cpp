// What the desktop, launchers and programs tell about a process: any text gives names that are
// usable, or none.
#include "Require.h"
#include "platform/desktop/DesktopEntry.h"
#include "platform/desktop/ExecLine.h"
#include "platform/desktop/ProcessStat.h"
#include "platform/desktop/ProgramName.h"
#include "platform/desktop/SandboxNames.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>

namespace velmora {
namespace {

bool isFileName(const std::string& name) {
    return !name.empty() && name.find('/') == name.npos;
}

void checkPrograms(const std::string& text) {
    const std::string program = programOfExec(text);
    require(program.empty() || isFileName(program), "an entry's program is a file name");
    const auto words = splitExec(text);
    const std::string executable = words.empty() ? text : words.front();
    require(std::ranges::all_of(programsOfProcess(executable, words), isFileName),
            "a process is known under file names");
    if (!text.empty() && text.find_first_of(std::string_view("%\0", 2)) == text.npos) {
        require(splitExec(execLine(text)) == std::vector{text}, "a command line is one program");
    }
}

void checkSystemFiles(const std::string& text) {
    if (const auto stat = parseProcessStat(text)) {
        require(text.find(stat->name) != text.npos, "a process has the name that the line says");
    }
    for (const std::string& id : desktopIdsOfControlGroup(text)) {
        require(isFileName(id), "an entry's id is a file name");
    }
    (void)flatpakApplication(text);
}

void checkEntry(const std::string& text) {
    static const support::TemporaryFolder folder("velmora-fuzz");
    const auto path = folder.path() / "entry.desktop";
    std::ofstream(path, std::ios::binary) << text;
    if (const auto entry = readDesktopEntry(path, "entry")) {
        require(entry->id == "entry" && entry->path == path, "an entry is the one that was read");
        require(std::ranges::all_of(entry->programs, isFileName), "programs are file names");
    }
}

} // namespace
} // namespace velmora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const std::string text(data, data + size);
    checkPrograms(text);
    checkSystemFiles(text);
    checkEntry(text);
    return 0;
}
