// The rate at which one project may upload. Part of its settings; held to by RateLimiter.
#pragma once

namespace mireth::receiver {

/// How fast one project may upload: `burst` chunks at once, refilled at `perSecond`.
struct UploadRate {
    double perSecond = 50;
    double burst = 500;
};

}  // namespace mireth::receiver
