// VelmoraError.h: the one error that engine and capture throw.
#pragma once

#include "engine/Problem.h"

#include <exception>
#include <string>

namespace velmora {

/// Thrown while a mix is being set up. Carries what is wrong as a value; its message is the
/// sentence of that value, and nothing downstream adds to it.
class VelmoraError : public std::exception {
public:
    enum class Case { tap, engine, noVirtualMic };

    explicit VelmoraError(Problem problem);

    static VelmoraError tap(std::string message);
    static VelmoraError engine(std::string message);
    static VelmoraError noVirtualMic();

    [[nodiscard]] Case which() const noexcept { return case_; }
    [[nodiscard]] const Problem& problem() const noexcept { return problem_; }
    /// The text for the user, UTF-8. French in either language.
    [[nodiscard]] const std::string& errorDescription() const noexcept { return message_; }
    [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

    bool operator==(const VelmoraError& other) const noexcept {
        return case_ == other.case_ && message_ == other.message_;
    }

private:
    VelmoraError(Case which, Problem problem);

    Case case_;
    Problem problem_;
    std::string message_;
};

/// What is wrong when something was thrown: an error that is none of ours speaks for itself.
[[nodiscard]] Problem problemOf(const std::exception& error);

} // namespace velmora
