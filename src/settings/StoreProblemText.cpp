#include "settings/StoreProblemText.h"

#include "platform/DefaultsStore.h"
#include "settings/AppSettings.h"

#include <array>
#include <string_view>
#include <utility>

namespace velmora {

namespace {

std::string_view frenchSentence(StoreProblem::Kind kind) {
    switch (kind) {
    case StoreProblem::Kind::damaged:
        return "Le fichier des réglages {file} était endommagé. Il a été mis de côté sous {copy} "
               "et un nouveau fichier a été commencé.";
    case StoreProblem::Kind::newer:
        return "Le fichier des réglages {file} vient d'une version plus récente de Velmora. "
               "Il reste intact ; rien ne sera enregistré cette fois.";
    case StoreProblem::Kind::unwritable:
        return "Impossible d'écrire les réglages dans {file} (err {status}). "
               "Les changements seront perdus à la fermeture de Velmora.";
    case StoreProblem::Kind::full:
        return "Plus de place pour les réglages dans {file} (err {status}). "
               "Les changements seront enregistrés quand de la place sera libérée.";
    }
    std::unreachable();
}

using Insertion = std::pair<std::string_view, std::string>;

/// Replaces each placeholder in one pass, so that a path that looks like one is left as it is.
std::string withInsertions(std::string_view text, const std::array<Insertion, 3>& insertions) {
    std::string result;
    while (!text.empty()) {
        std::string_view consumed = text.substr(0, 1);
        std::string_view added = consumed;
        for (const auto& [placeholder, value] : insertions) {
            if (text.starts_with(placeholder)) {
                consumed = placeholder;
                added = value;
            }
        }
        result += added;
        text.remove_prefix(consumed.size());
    }
    return result;
}

} // namespace

std::string storeProblemText(const StoreProblem& problem, const AppSettings& settings) {
    return withInsertions(settings.t(frenchSentence(problem.kind)),
                          {Insertion{"{file}", problem.file},
                           Insertion{"{copy}", problem.setAside},
                           Insertion{"{status}", std::to_string(problem.status)}});
}

} // namespace velmora
