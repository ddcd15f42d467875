// The last guard around work of others: what it throws is reported and goes no further. Used by every
// Linux service that runs callbacks on a queue or a thread.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

namespace mireth::platform {

/// Told, in words, what work has thrown; runs on the thread that ran the work.
using EscapedErrorHandler = std::function<void(std::string_view description)>;

/// One line on standard error. Any thread.
void printEscapedError(std::string_view description) noexcept;

/// Describes the exception now being handled and gives it to `handler`; to standard error when there is
/// none or when it throws itself. Called from a catch block only.
void reportCurrentException(std::string_view where, const EscapedErrorHandler& handler) noexcept;

/// Calls `work` and reports what it throws. `where` names the place in the report.
template <class Function>
void runGuarded(Function&& work, std::string_view where, const EscapedErrorHandler& handler) noexcept {
    try {
        std::forward<Function>(work)();
    } catch (...) {
        reportCurrentException(where, handler);
    }
}

}  // namespace mireth::platform
