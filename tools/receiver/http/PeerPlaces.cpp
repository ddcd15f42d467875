// A count for each address that has a connection.
#include "http/PeerPlaces.hpp"

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

class PeerPlaces::Place {
  public:
    Place(PeerPlaces& places, std::string key) : places_(places), key_(std::move(key)) {}
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() {
        const std::lock_guard lock(places_.mutex_);
        const auto found = places_.taken_.find(key_);
        if (--found->second == 0) {
            places_.taken_.erase(found);
        }
    }

  private:
    PeerPlaces& places_;
    const std::string key_;
};

std::shared_ptr<const void> PeerPlaces::take(const sockaddr_storage& peer) {
    auto key = keyOf(peer);
    const std::lock_guard lock(mutex_);
    auto& taken = taken_[key];
    if (most_ && taken >= *most_) {
        return nullptr;
    }
    auto place = std::make_shared<const Place>(*this, std::move(key));
    ++taken;
    return place;
}

}  // namespace mireth::receiver
