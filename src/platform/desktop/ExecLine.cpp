#include "platform/desktop/ExecLine.h"

namespace velmora {
namespace {

constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
constexpr std::string_view escapedInQuotes = "\"`$\\";

std::string quotedWord(std::string_view argument) {
    if (argument.find_first_of(reserved) == argument.npos) {
        return std::string(argument);
    }
    std::string result = "\"";
    for (const char letter : argument) {
        if (escapedInQuotes.find(letter) != escapedInQuotes.npos) {
            result += '\\';
        }
        result += letter;
    }
    return result + '"';
}

std::string withoutFieldCodes(std::string_view argument) {
    std::string result;
    for (const char letter : argument) {
        result += letter;
        if (letter == '%') {
            result += '%';
        }
    }
    return result;
}

} // namespace

std::string execLine(std::string_view program) {
    return quotedWord(withoutFieldCodes(program));
}

} // namespace velmora
