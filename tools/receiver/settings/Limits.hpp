// The caps that keep one client, or all of them, from taking the receiver down. Constant after the start.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace mireth::receiver {

/// Bounds on what one client can make the receiver do.
struct Limits {
    std::uint64_t requestBytes = 20ULL * 1024 * 1024;  ///< body of one chunk upload
    /// Served at once, a thread each; as many more wait for one, the rest are answered 503.
    std::size_t connections = 512;
    /// Of one network address, served and waiting; none: as many as there are.
    std::optional<std::size_t> connectionsPerAddress;
    int headSeconds = 10;          ///< from the connection until the request's headers are complete
    int idleSeconds = 15;          ///< longest silence within a request
    int requestSeconds = 120;      ///< from the connection until the body is complete
    std::int64_t chunks = 10'000;  ///< kept for one session
    std::uint64_t sessionBytes = 1ULL << 30U;    ///< videos and timelines kept for one session
    std::uint64_t timelineBytes = 32ULL << 20U;  ///< of the timelines alone
    std::int64_t logLines = 10'000;        ///< kept for one session; lines without one share one such budget
    std::uint64_t logBytes = 4ULL << 20U;  ///< the same in bytes
    std::optional<std::uint64_t> diskBytes;   ///< of all that is kept; none: as much as the disk holds
    std::uint64_t freeBytes = 256ULL << 20U;  ///< that stay free on the disk
};

}  // namespace mireth::receiver
