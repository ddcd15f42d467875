// A count for each address that has a connection.
#include "http/PerAddressLimiter.hpp"

#include <netinet/in.h>

#include <utility>

namespace mireth::receiver {
namespace {

// The bytes that tell one stranger from another.
std::string keyOf(const sockaddr_storage& peer) {
    if (peer.ss_family == AF_INET) {
        const auto& v4 = reinterpret_cast<const sockaddr_in&>(peer).sin_addr;
        return {reinterpret_cast<const char*>(&v4), sizeof v4};
    }
    if (peer.ss_family == AF_INET6) {
        const auto& v6 = reinterpret_cast<const sockaddr_in6&>(peer).sin6_addr;
        const auto* const bytes = reinterpret_cast<const char*>(v6.s6_addr);
        return IN6_IS_ADDR_V4MAPPED(&v6) ? std::string(bytes + 12, 4) : std::string(bytes, 8);
    }
    return {};
}

}  // namespace

class PerAddressLimiter::Slot {
  public:
    Slot(PerAddressLimiter& limiter, std::string key) : limiter_(limiter), key_(std::move(key)) {}
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;
    ~Slot() {
        const std::lock_guard lock(limiter_.mutex_);
        const auto found = limiter_.connections_.find(key_);
        if (--found->second == 0) {
            limiter_.connections_.erase(found);
        }
    }

  private:
    PerAddressLimiter& limiter_;
    const std::string key_;
};

std::shared_ptr<const void> PerAddressLimiter::acquire(const sockaddr_storage& peer) {
    auto key = keyOf(peer);
    const std::lock_guard lock(mutex_);
    auto& count = connections_[key];
    if (most_ && count >= *most_) {
        return nullptr;
    }
    auto slot = std::make_shared<const Slot>(*this, std::move(key));
    ++count;
    return slot;
}

}  // namespace mireth::receiver
