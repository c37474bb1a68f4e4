// velmora: what users and desktops start. It carries a command to the mixer that runs, and becomes
// the mixer when that is to be started. The windows' libraries take most of a start, so it is a
// program of its own.

#include "app/CommandClient.h"
#include "app/Display.h"
#include "engine/Sentence.h"
#include "operations/CommandHelp.h"
#include "operations/LaunchRequest.h"
#include "platform/InstalledFile.h"
#include "platform/sqlite/KeptText.h"
#include "platform/sqlite/SqliteDefaultsStore.h"
#include "settings/Texts.h"

#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>

#include <QCoreApplication>

namespace {

constexpr std::string_view build = VELMORA_BUILD; // unknown outside of a history

/// The settings belong to the mixer: they are only looked into.
std::string inUsersLanguage(std::string_view french) {
    using namespace velmora;
    static const auto language = keptText(SqliteDefaultsStore::defaultPath(), "language");
    return std::string(language == "en" ? inEnglish(french) : french);
}

void complain(const std::string& sentence) {
    std::fputs(("velmora: " + sentence + "\n").c_str(), stderr);
}

/// Returns only when it could not.
int becomeMixer(char** argv) {
    const std::string mixer = velmora::installedFile("libexec/velmora/velmora-mixer");
    execv(mixer.c_str(), argv); // under the name that it was called by
    complain(inUsersLanguage("Impossible d'ouvrir Velmora."));
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;
    using Kind = LaunchRequest::Kind;

    const LaunchRequest request =
        launchRequest(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    switch (request.kind) {
    case Kind::help:
        std::fputs(helpText(inUsersLanguage).c_str(), stdout);
        return 0;
    case Kind::version:
        std::printf("Velmora %s (%s)\n", VELMORA_VERSION, build.empty() ? "—" : build.data());
        return 0;
    case Kind::unknownOption:
        complain(filled(inUsersLanguage("L'option « {name} » est inconnue. « velmora --help » "
                                        "les montre."),
                        {{"{name}", request.words.front()}}));
        return 2;
    case Kind::command: {
        const QCoreApplication application(argc, argv);
        return CommandClient(inUsersLanguage).run(request);
    }
    case Kind::windows:
    case Kind::hidden:
        if (!request.hasQtsOptions && !hasDisplay()) {
            complain(inUsersLanguage(
                "Aucun écran n'est joignable. « velmora --headless » mixe sans fenêtres."));
            return 1;
        }
        return becomeMixer(argv);
    case Kind::headless:
        return becomeMixer(argv);
    }
    std::unreachable();
}
