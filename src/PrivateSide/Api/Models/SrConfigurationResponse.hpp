// What the service allows a project to record.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mireth {

enum class SREnablement {
    unknown,
    disabled,
    enabledForWebOnly,
    enabledForMobileOnly,
    enabledForWebAndMobile
};

/// "SR_UNKNOWN", "SR_DISABLED", …
std::string_view rawValue(SREnablement enablement) noexcept;

struct SrConfigurationResponse {
    std::optional<SREnablement> srEnabled;
    std::string dataCenter;
    /// Per cent of the sessions that are recorded.
    double samplingRate = 0;
    std::vector<std::map<std::string, std::string>> customSignal;
};

/// The configuration in words, for log lines.
std::string description(const SrConfigurationResponse& configuration);

}  // namespace mireth
