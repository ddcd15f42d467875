// Counts what each project sends against its rate: chunks, sessions, log lines.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "settings/UploadRate.hpp"

namespace mireth::receiver {

/// A token bucket per project. Any thread may call.
class RateLimiter {
  public:
    using Instant = std::chrono::steady_clock::time_point;

    /// Takes one from the project's allowance at `now`; false when there is none left. Callers pass only
    /// projects that are listed or have an open session, so the number of buckets stays bounded.
    bool take(const std::string& brandId, const std::string& projectId, const UploadRate& rate, Instant now);

  private:
    struct Bucket {
        double tokens;
        Instant filledAt;
    };

    std::mutex mutex_;
    // Guarded by mutex_.
    std::map<std::pair<std::string, std::string>, Bucket> buckets_;
};

}  // namespace mireth::receiver
