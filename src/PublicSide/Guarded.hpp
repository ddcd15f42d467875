// The last guard of the public interface: what a call throws is logged and goes no further.
#pragma once

#include <utility>

#include "PublicSide/MirethSRCore.hpp"

namespace mireth {

/// Runs `call`; what it throws is logged, and `otherwise` answers instead.
template <class Call, class Otherwise>
auto guardedOr(MirethSRCore& core, Otherwise otherwise, Call call) noexcept -> decltype(call()) {
    try {
        return call();
    } catch (...) {
        try {
            core.log().error(LogTag::lifecycle, "An unexpected error was caught at the public interface.", {},
                             false);
        } catch (...) {
            return otherwise();
        }
    }
    return otherwise();
}

template <class Call, class Result>
Result guarded(MirethSRCore& core, Result otherwise, Call call) noexcept {
    return guardedOr(
        core, [&otherwise]() -> Result { return std::move(otherwise); },
        [&call]() -> Result { return call(); });
}

template <class Call>
void guarded(MirethSRCore& core, Call call) noexcept {
    (void)guarded(core, true, [&call] {
        call();
        return true;
    });
}

}  // namespace mireth
