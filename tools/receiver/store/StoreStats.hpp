// How much is kept and how much more there is room for. Told by the store, shown by /metrics and used for the
// limits on the disk.
#pragma once

#include <cstdint>

namespace mireth::receiver {

struct StoreStats {
    std::int64_t sessions = 0;
    std::int64_t chunks = 0;
    std::uint64_t videoBytes = 0;     ///< of all videos, those under way included
    std::uint64_t databaseBytes = 0;  ///< of the database and its write-ahead log
    std::uint64_t freeBytes = 0;      ///< on the file system
};

}  // namespace mireth::receiver
