// A lookup by digest: how long it takes tells nothing of a secret.
#include "access/Viewers.hpp"

#include <algorithm>

#include "access/Secrets.hpp"

namespace mireth::receiver {

void Viewers::add(std::string_view secret, Instant now) {
    const std::lock_guard lock(mutex_);
    std::erase_if(untilByDigest_, [&](const auto& entry) { return entry.second <= now; });
    if (untilByDigest_.size() >= most) {
        untilByDigest_.erase(
            std::ranges::min_element(untilByDigest_, {}, [](const auto& entry) { return entry.second; }));
    }
    untilByDigest_[digestOf(secret)] = now + lifetime;
}

bool Viewers::knows(std::string_view secret, Instant now) const {
    const std::lock_guard lock(mutex_);
    const auto found = untilByDigest_.find(digestOf(secret));
    return found != untilByDigest_.end() && now < found->second;
}

void Viewers::remove(std::string_view secret) {
    const std::lock_guard lock(mutex_);
    untilByDigest_.erase(digestOf(secret));
}

}  // namespace mireth::receiver
