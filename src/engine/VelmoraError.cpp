#include "engine/VelmoraError.h"

#include <utility>

namespace velmora {
namespace {

VelmoraError::Case caseOf(Problem::Kind kind) {
    switch (kind) {
    case Problem::Kind::noVirtualMic:
        return VelmoraError::Case::noVirtualMic;
    case Problem::Kind::noSoundYet:
    case Problem::Kind::tapRefused:
    case Problem::Kind::tapDeviceRefused:
    case Problem::Kind::tapCallbackRefused:
    case Problem::Kind::tapNotStarted:
        return VelmoraError::Case::tap;
    default:
        return VelmoraError::Case::engine;
    }
}

Problem ownWords(std::string message) {
    return {.kind = Problem::Kind::ownWords, .detail = std::move(message)};
}

} // namespace

VelmoraError::VelmoraError(Case which, Problem problem)
    : case_(which), problem_(std::move(problem)), message_(frenchSentence(problem_)) {
}

VelmoraError::VelmoraError(Problem problem) : VelmoraError(caseOf(problem.kind), problem) {
}

VelmoraError VelmoraError::tap(std::string message) {
    return {Case::tap, ownWords(std::move(message))};
}

VelmoraError VelmoraError::engine(std::string message) {
    return {Case::engine, ownWords(std::move(message))};
}

VelmoraError VelmoraError::noVirtualMic() {
    return VelmoraError({.kind = Problem::Kind::noVirtualMic});
}

Problem problemOf(const std::exception& error) {
    const auto* const ours = dynamic_cast<const VelmoraError*>(&error);
    return ours != nullptr ? ours->problem() : ownWords(error.what());
}

} // namespace velmora
