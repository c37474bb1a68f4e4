// VelmoraError.h: the one error that engine and capture throw.
#pragma once

#include "platform/Status.h"

#include <exception>
#include <string>
#include <string_view>

namespace velmora {

/// Thrown while a mix is being set up. The message is finished where the error is made; nothing
/// downstream adds to it.
class VelmoraError : public std::exception {
public:
    enum class Case { tap, engine, noVirtualMic };

    static VelmoraError tap(std::string message);
    static VelmoraError engine(std::string message);
    static VelmoraError noVirtualMic();

    [[nodiscard]] Case which() const noexcept { return case_; }
    /// The text for the user, UTF-8. French in either language.
    [[nodiscard]] const std::string& errorDescription() const noexcept { return message_; }
    [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

    bool operator==(const VelmoraError& other) const noexcept {
        return case_ == other.case_ && message_ == other.message_;
    }

private:
    VelmoraError(Case which, std::string message) : case_(which), message_(std::move(message)) {}

    Case case_;
    std::string message_;
};

/// "`sentence` (err `status`)": how every refusal by the platform reads.
[[nodiscard]] std::string withStatus(std::string_view sentence, Status status);

} // namespace velmora
