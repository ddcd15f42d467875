// A session, as the host is told of it.
#pragma once

#include <cstdint>
#include <string>

namespace mireth {

struct ReplaySessionInfo {
    /// The identifier that the service assigned.
    std::string sessionId;
    /// Milliseconds since the Unix epoch, as the service reported them.
    std::int64_t sessionStartTimeMillis = 0;
    bool operator==(const ReplaySessionInfo&) const = default;
};

}  // namespace mireth
