#include "operations/LaunchRequest.h"

#include <optional>
#include <string_view>

namespace velmora {

namespace {

using Kind = LaunchRequest::Kind;

std::optional<Kind> ownWay(std::string_view option) {
    if (option == "--hidden") {
        return Kind::hidden;
    }
    if (option == "--headless") {
        return Kind::headless;
    }
    if (option == "--help" || option == "-h") {
        return Kind::help;
    }
    if (option == "--version") {
        return Kind::version;
    }
    return std::nullopt;
}

} // namespace

LaunchRequest launchRequest(std::span<const char* const> arguments) {
    LaunchRequest request;
    bool isOurs = false; // a word of ours came before: what follows is none of Qt's
    for (const std::string_view argument : arguments) {
        const auto way = ownWay(argument);
        const bool isQts = !isOurs && argument.starts_with('-') && !argument.starts_with("--");
        if (way && (*way == Kind::help || *way == Kind::version)) {
            return {.kind = *way};
        }
        if (way && !isOurs) {
            request.kind = *way;
        } else if (argument == "--start") {
            request.startsMixer = true;
        } else if (isQts) {
            request.hasQtsOptions = true; // with values, perhaps
            return request;
        } else if (argument.starts_with("--") && !isOurs && argument != "--json") {
            return {.kind = Kind::unknownOption, .words = {std::string(argument)}};
        } else {
            isOurs = isOurs || argument != "--json";
            request.words.emplace_back(argument);
        }
    }
    if (isOurs) {
        request.kind = Kind::command;
    } else if (request.startsMixer || !request.words.empty()) {
        return {.kind = Kind::unknownOption,
                .words = {request.startsMixer ? "--start" : request.words.front()}};
    }
    return request;
}

} // namespace velmora
