// Runs what others have written, and lets nothing escape that it throws. In the header alone: the Qt
// component and its plugins guard with it too, and the library shows them no more than its public names.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "Base/CurrentException.hpp"

namespace mireth {

/// Told, in words, who has thrown what; runs on the thread that it was thrown on.
using EscapedErrorHandler = std::function<void(std::string_view description)>;

/// Tells `handler` of the exception that is being handled, with `who` as the culprit; without a handler, or
/// when it throws itself, there is a line on standard error. Called from a catch block only.
inline void reportCurrentException(std::string_view who, const EscapedErrorHandler& handler = {}) noexcept {
    try {
        const std::string description = std::string(who) + " threw: " + describeCurrentException();
        if (handler) {
            handler(description);
        } else {
            std::fprintf(stderr, "M-VEX: %s\n", description.c_str());
        }
    } catch (...) {
        // No memory for the words, or a handler that throws: the culprit's name has to do.
        std::fprintf(stderr, "M-VEX: %.*s threw\n", static_cast<int>(who.size()), who.data());
    }
}

/// Calls `function` and reports what it throws, so that it cannot keep those from running who come after.
template <class Function>
void runGuarded(std::string_view who, Function&& function, const EscapedErrorHandler& handler = {}) noexcept {
    try {
        std::forward<Function>(function)();
    } catch (...) {
        reportCurrentException(who, handler);
    }
}

}  // namespace mireth
