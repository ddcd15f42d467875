// The library's own way behind the public interface, for its tools and tests.
#pragma once

#include "MirethVex/PublicSide/MirethSR.hpp"

namespace mireth {

struct MirethSRAccess {
    static MirethSRCore& core(MirethSR& library) noexcept { return *library.core_; }
};

}  // namespace mireth
