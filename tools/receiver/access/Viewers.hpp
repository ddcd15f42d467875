// Those who have logged in to view sessions, each known by a secret in a cookie. Used by ViewerAuthorization.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// Any thread may call. Only digests of the secrets are held.
class Viewers {
  public:
    using Instant = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::hours lifetime{12};

    /// `secret` is a viewer's from `now` on. Of too many viewers the one who came first has to log in again.
    void add(std::string_view secret, Instant now);
    bool knows(std::string_view secret, Instant now) const;
    void remove(std::string_view secret);

  private:
    static constexpr std::size_t most = 1000;

    mutable std::mutex mutex_;
    // Guarded by mutex_.
    std::map<std::string, Instant> untilByDigest_;
};

}  // namespace mireth::receiver
