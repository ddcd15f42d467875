// The library's own way behind the public interface, for its tools and tests.
#pragma once

#include <memory>

#include "MirethVex/PublicSide/MirethSR.hpp"

namespace mireth {

struct MirethSRAccess {
    /// A library beside the shared one. `core` is not null.
    static MirethSR make(std::unique_ptr<MirethSRCore> core) noexcept;
    static MirethSRCore& core(MirethSR& library) noexcept { return *library.core_; }
};

}  // namespace mireth
