// One project's settings, as the operator wrote them down.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "settings/UploadRate.hpp"

namespace mireth::receiver {

/// What a client is told about its project, and how it is treated.
struct ProjectSettings {
    /// The raw enablement value that clients are sent; none leaves the key out of the answer.
    std::optional<std::string> srEnabled = "SR_ENABLED_FOR_WEB_AND_MOBILE";
    /// Percentage of sessions that clients record, 0 to 100.
    double samplingRate = 100;
    /// Name of the data centre; clients make the log host's first label from it.
    std::string dataCenter = "US_WEST";
    std::vector<std::map<std::string, std::string>> customSignal;
    UploadRate uploadRate;

    /// True when sessions of phones may be created.
    bool acceptsMobileSessions() const {
        return srEnabled == "SR_ENABLED_FOR_MOBILE_ONLY" || srEnabled == "SR_ENABLED_FOR_WEB_AND_MOBILE";
    }
};

}  // namespace mireth::receiver
