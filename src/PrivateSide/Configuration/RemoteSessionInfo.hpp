// A session as the service knows it.
#pragma once

#include <cstdint>
#include <string>

namespace mireth {

struct RemoteSessionInfo {
    std::string sessionId;
    /// Milliseconds since the Unix epoch, as the service reported them.
    std::int64_t sessionStartTimeMillis = 0;
    bool operator==(const RemoteSessionInfo&) const = default;
};

}  // namespace mireth
