// What all uploads share, so that many at once take no more than the receiver has. Owned by the endpoints.
#pragma once

#include "access/RateLimiter.hpp"
#include "base/Turns.hpp"
#include "ingestion/HeldText.hpp"

namespace mireth::receiver {

/// Each part guards itself.
struct UploadLimits {
    RateLimiter rate;
    SharedText text;
    Turns checking{2};  ///< of timelines
};

}  // namespace mireth::receiver
