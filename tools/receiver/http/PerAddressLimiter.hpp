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

/// Any thread may call. It must outlive the slots it gave away.
class PerAddressLimiter {
  public:
    /// At most `most` for each address; none: as many as come.
    explicit PerAddressLimiter(std::optional<std::size_t> most) : most_(most) {}

    /// A slot for one more connection, given back with the object; null when the address has as many as it
    /// may. An IPv6 address counts with its network of 64 bits, which is what one subscriber gets.
    std::shared_ptr<const void> acquire(const sockaddr_storage& peer);

  private:
    class Slot;

    const std::optional<std::size_t> most_;
    std::mutex mutex_;
    std::map<std::string, std::size_t> connections_;  // guarded by mutex_
};

}  // namespace mireth::receiver
