// Counts the uploads of each project against its rate. Used for every chunk of an open session.
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

    /// Takes one upload from the project's allowance at `now`; false when there is none left.
    /// Callers pass only known projects with an open session, so the number of buckets stays bounded by
    /// theirs.
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
