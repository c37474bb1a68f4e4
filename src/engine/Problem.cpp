#include "engine/Problem.h"

#include "engine/Sentence.h"
#include "platform/DefaultsStore.h"

#include <utility>

namespace velmora {
namespace {

using Kind = Problem::Kind;

/// What is looked up, and what stands around it in every language.
struct Form {
    std::string_view before;
    std::string_view text;
    std::string_view after;
};

constexpr std::string_view ofSource = "{source}";
constexpr std::string_view withStatus = " (err {status})";

Form formOf(Kind kind) {
    switch (kind) {
    case Kind::ownWords:
        return {ofSource, "", "{detail}"};
    case Kind::noSource:
        return {"", "Choisir d'abord une source", ""};
    case Kind::noVirtualMic:
        return {"",
                "Micro virtuel introuvable — réinstalle Velmora (le driver a peut-être été "
                "supprimé).",
                ""};
    case Kind::serviceAway:
        return {"", "Service audio injoignable", ""};
    case Kind::noUnit:
        return {ofSource, "Unité audio indisponible", ""};
    case Kind::outputNotAssigned:
        return {"", "Impossible d'assigner la sortie", withStatus};
    case Kind::noRealTimeRights:
        return {"",
                "Le système ne donne pas la priorité temps réel à Velmora : le son vient en blocs "
                "plus longs, donc avec un peu plus de retard. Installe rtkit, ou ajoute ton compte "
                "au groupe « pipewire », puis rouvre ta session.",
                ""};
    case Kind::pairMissing:
        return {"", "Sorties {pair} indisponibles ({channels} canaux)", ""};
    case Kind::pairNotRouted:
        return {"", "Routage vers les sorties {pair} refusé", withStatus};
    case Kind::outputNotStarted:
        return {"", "Démarrage de la sortie refusé", withStatus};
    case Kind::inputNotAssigned:
        return {ofSource, "Impossible d'assigner l'entrée", withStatus};
    case Kind::channelMissing:
        return {ofSource, "Canal {first} indisponible ({channels} canaux)", ""};
    case Kind::inputNotStarted:
        return {ofSource, "Démarrage de l'entrée refusé", withStatus};
    case Kind::noSoundYet:
        return {ofSource,
                "Cette app n'a pas encore de son — lance une lecture dedans, puis "
                "re-sélectionne-la.",
                ""};
    case Kind::tapRefused:
        return {ofSource,
                "Création du tap refusée",
                " (err {status}) — vérifier la permission d'enregistrement audio système"};
    case Kind::tapDeviceRefused:
        return {ofSource, "Création du device agrégé refusée", withStatus};
    case Kind::tapCallbackRefused:
        return {ofSource, "IOProc refusé", withStatus};
    case Kind::tapNotStarted:
        return {ofSource, "Démarrage du device agrégé refusé", withStatus};
    case Kind::notFound:
        return {"", "Introuvable", " : {subject}"};
    case Kind::notLaunched:
        return {"", "Impossible de lancer", " {subject}"};
    case Kind::presetFileUnknown:
        return {"",
                "{file} n'est pas un fichier de presets Velmora, ou il est endommagé. "
                "Aucun preset n'a été importé.",
                ""};
    case Kind::presetFileNewer:
        return {"",
                "{file} vient d'une version plus récente de Velmora. "
                "Aucun preset n'a été importé.",
                ""};
    case Kind::fileNotRead:
        return {"", "Impossible de lire {file} ({detail}).", ""};
    case Kind::fileNotWritten:
        return {"", "Impossible d'écrire {file} ({detail}).", ""};
    case Kind::presetsUnreadable:
        return {"",
                "Des presets enregistrés sont illisibles. Rien n'en est perdu : ils sont mis de "
                "côté et pourront être repris quand Velmora saura les lire.",
                ""};
    case Kind::presetsReadable:
        return {
            "", "Des presets mis de côté peuvent être repris, dans le menu à côté du preset.", ""};
    case Kind::storeDamaged:
        return {"",
                "Le fichier des réglages {file} était endommagé. Il a été mis de côté sous {copy} "
                "et ce qui pouvait encore en être lu est dans un nouveau fichier.",
                ""};
    case Kind::storeNewer:
        return {"",
                "Le fichier des réglages {file} vient d'une version plus récente de Velmora. "
                "Il reste intact ; rien ne sera enregistré cette fois.",
                ""};
    case Kind::storeUnwritable:
        return {"",
                "Impossible d'écrire les réglages dans {file} (err {status}). "
                "Les changements seront perdus à la fermeture de Velmora.",
                ""};
    case Kind::storeFull:
        return {"",
                "Plus de place pour les réglages dans {file} (err {status}). "
                "Les changements seront enregistrés quand de la place sera libérée.",
                ""};
    case Kind::storeInUse:
        return {"",
                "Velmora est ouvert ailleurs avec les mêmes réglages ({file}). Ils sont lus ; rien "
                "ne sera enregistré tant que l'autre est ouvert.",
                ""};
    case Kind::storeGone:
        return {"", "Le fichier des réglages {file} n'est plus là.", ""};
    case Kind::storeCopyOffered:
        return {"", "Une copie de {file} du {copy} peut être reprise.", ""};
    case Kind::storeCopyTaken:
        return {"",
                "La copie du {copy} est de nouveau dans {file}. Relance Velmora pour retrouver tes "
                "réglages.",
                ""};
    case Kind::storeKeptApart:
        return {"",
                "Les réglages de {file} ne sont pas ceux que Velmora a lus au démarrage. Ils sont "
                "restés intacts ; ce qui a été changé depuis est gardé à côté. Relance Velmora "
                "pour les retrouver.",
                ""};
    case Kind::noDriver:
        return {"", "Driver Velmora introuvable", ""};
    case Kind::publicSinkRefused:
        return {"", "Création du device DAW refusée", withStatus};
    }
    std::unreachable();
}

Kind kindOf(StoreProblem::Kind kind) {
    switch (kind) {
    case StoreProblem::Kind::damaged:
        return Kind::storeDamaged;
    case StoreProblem::Kind::newer:
        return Kind::storeNewer;
    case StoreProblem::Kind::keptApart:
        return Kind::storeKeptApart;
    case StoreProblem::Kind::gone:
        return Kind::storeGone;
    case StoreProblem::Kind::copyTaken:
        return Kind::storeCopyTaken;
    case StoreProblem::Kind::copyOffered:
        return Kind::storeCopyOffered;
    case StoreProblem::Kind::unwritable:
        return Kind::storeUnwritable;
    case StoreProblem::Kind::full:
        return Kind::storeFull;
    case StoreProblem::Kind::inUse:
        return Kind::storeInUse;
    }
    std::unreachable();
}

/// "3-4". Counted without a sign, because a stored choice may name any number.
std::string pairText(std::int64_t first) {
    return std::to_string(first) + "-" + std::to_string(static_cast<std::uint64_t>(first) + 1);
}

std::string withInsertions(std::string_view text, const Problem& problem) {
    return filled(text,
                  {{ofSource, problem.subject.empty() ? "" : problem.subject + " : "},
                   {"{subject}", problem.subject},
                   {"{file}", problem.subject},
                   {"{detail}", problem.detail},
                   {"{copy}", problem.detail},
                   {"{status}", std::to_string(problem.status)},
                   {"{pair}", pairText(problem.first)},
                   {"{first}", std::to_string(problem.first)},
                   {"{channels}", std::to_string(problem.channels)}});
}

} // namespace

Problem problemOf(const StoreProblem& problem) {
    return {.kind = kindOf(problem.kind),
            .subject = problem.file,
            .detail = problem.setAside,
            .status = problem.status};
}

std::string sentence(const Problem& problem, const Translation& translation) {
    const Form form = formOf(problem.kind);
    return withInsertions(
        std::string(form.before) + translation(form.text) + std::string(form.after), problem);
}

std::string frenchSentence(const Problem& problem) {
    return sentence(problem, [](std::string_view french) { return std::string(french); });
}

std::string sentences(std::span<const Problem> problems, const Translation& translation) {
    std::string lines;
    bool isListing = false;
    for (const Problem& problem : problems) {
        const bool isMissing = problem.kind == Kind::notFound;
        if (isMissing && isListing) {
            lines += ", " + problem.subject;
        } else {
            lines += (lines.empty() ? "" : "\n") + sentence(problem, translation);
        }
        isListing = isMissing;
    }
    return lines;
}

} // namespace velmora
