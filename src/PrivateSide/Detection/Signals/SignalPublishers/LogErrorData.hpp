// An error that the host reported.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace mireth {

struct LogErrorData {
    /// When the host logged it, in milliseconds since the Unix epoch.
    std::int64_t detectionTime = 0;
    std::optional<std::string> message;
    bool operator==(const LogErrorData&) const = default;
};

}  // namespace mireth
