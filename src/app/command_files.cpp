// Writes what the table of commands says for man and for shells into a folder of the build.

#include "operations/CommandHelp.h"
#include "operations/Completions.h"
#include "operations/ManualPage.h"
#include "settings/Texts.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    using namespace velmora;
    if (argc != 3) {
        std::fputs("usage: velmora_command_files <folder> <version>\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const std::string version = argv[2];
    std::filesystem::create_directories(folder / "fr");
    const auto write = [&](const char* name, const std::string& text) {
        std::ofstream(folder / name) << text;
    };
    write("velmora.1",
          manualPage([](std::string_view french) { return std::string(inEnglish(french)); },
                     version));
    write("fr/velmora.1",
          manualPage([](std::string_view french) { return std::string(french); }, version));
    write("velmora.bash", bashCompletion());
    write("_velmora", zshCompletion());
    write("velmora.fish", fishCompletion());
    return 0;
}
