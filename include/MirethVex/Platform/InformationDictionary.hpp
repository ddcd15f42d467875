// Read-only facts that the app is shipped with: endpoints and versions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mireth::platform {

/// The keys the library reads.
namespace information_keys {
/// Origin of the session-replay service, without a trailing slash.
inline constexpr std::string_view srEndpointUrl = "SR_ENDPOINT_URL";
/// Origin of the configuration service; its host and port are also the suffix of the log hosts.
inline constexpr std::string_view keldaEndpointUrl = "KELDA_ENDPOINT_URL";
/// The library's version.
inline constexpr std::string_view vexVersion = "VEX_VERSION";
/// "true" lets the Linux platform speak plain http with any host, not with loopback hosts only.
inline constexpr std::string_view allowInsecureHttp = "ALLOW_INSECURE_HTTP";
/// "phone", "pad", "desktop" or "television": what the Linux platform takes the device for, whatever its
/// chassis says. For development machines.
inline constexpr std::string_view deviceIdiom = "DEVICE_IDIOM";
/// The app's version.
inline constexpr std::string_view appVersion = "CFBundleShortVersionString";
}  // namespace information_keys

/// Any thread. Constant for the life of the process.
class InformationDictionary {
  public:
    virtual ~InformationDictionary() = default;
    /// The text under `key`; nothing when it is absent or not a text.
    virtual std::optional<std::string> string(std::string_view key) const = 0;
};

}  // namespace mireth::platform
