#include "platforms/linux/system/EscapedError.hpp"

#include <cstdio>
#include <exception>
#include <string>

namespace mireth::platform {

namespace {

std::string describeCurrentException(std::string_view where) {
    std::string text = "an error escaped from ";
    text += where;
    try {
        throw;
    } catch (const std::exception& error) {
        text += ": ";
        text += error.what();
    } catch (...) {
        text += ": not a std::exception";
    }
    return text;
}

}  // namespace

void printEscapedError(std::string_view description) noexcept {
    std::fprintf(stderr, "M-VEX: %.*s\n", static_cast<int>(description.size()), description.data());
}

void reportCurrentException(std::string_view where, const EscapedErrorHandler& handler) noexcept {
    try {
        const std::string description = describeCurrentException(where);
        if (handler) {
            handler(description);
        } else {
            printEscapedError(description);
        }
    } catch (...) {
        // No memory for the report, or a handler that throws: the place alone has to do.
        printEscapedError(where);
    }
}

}  // namespace mireth::platform
