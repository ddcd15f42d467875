// Bounds the connections of one network address, so that a single stranger cannot take them all. Used by the
// HTTP server.
#pragma once

#include <sys/socket.h>

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace mireth::receiver {

/// Any thread may call. It must outlive the places it gave away.
class PeerPlaces {
  public:
    /// At most `most` for each address; none: as many as come.
    explicit PeerPlaces(std::optional<std::size_t> most) : most_(most) {}

    /// A place for one more connection, given back with the object; null when the address has as many as it
    /// may. An IPv6 address counts with its network of 64 bits, which is what one subscriber gets.
    std::shared_ptr<const void> take(const sockaddr_storage& peer);

  private:
    class Place;

    const std::optional<std::size_t> most_;
    std::mutex mutex_;
    std::map<std::string, std::size_t> taken_;  // guarded by mutex_
};

}  // namespace mireth::receiver
