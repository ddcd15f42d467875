// Token buckets, refilled by the time that passed since they were last looked at.
#include "access/RateLimiter.hpp"

#include <algorithm>

namespace mireth::receiver {

bool RateLimiter::take(const std::string& brandId, const std::string& projectId, const UploadRate& rate,
                       Instant now) {
    const std::lock_guard lock(mutex_);
    auto& bucket = buckets_.try_emplace({brandId, projectId}, Bucket{rate.burst, now}).first->second;
    // Two threads can arrive in another order than they read the clock in.
    const double passed = std::max(0.0, std::chrono::duration<double>(now - bucket.filledAt).count());
    bucket.tokens = std::min(rate.burst, bucket.tokens + passed * rate.perSecond);
    bucket.filledAt = std::max(bucket.filledAt, now);
    if (bucket.tokens < 1) {
        return false;
    }
    bucket.tokens -= 1;
    return true;
}

}  // namespace mireth::receiver
