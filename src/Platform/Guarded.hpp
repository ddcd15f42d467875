// Runs what others have written, and lets nothing escape that it throws.
#pragma once

#include <cstdio>
#include <exception>
#include <utility>

namespace mireth::platform {

/// What `function` throws is reported on standard error, with `who` as the culprit, so that it cannot keep
/// those from hearing who come after.
template <class Function>
void guarded(const char* who, Function&& function) noexcept {
    try {
        std::forward<Function>(function)();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "M-VEX: %s threw: %s\n", who, error.what());
    } catch (...) {
        std::fprintf(stderr, "M-VEX: %s threw something that is not an exception\n", who);
    }
}

}  // namespace mireth::platform
