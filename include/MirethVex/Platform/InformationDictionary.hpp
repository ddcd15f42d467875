// Read-only facts that the app is shipped with: endpoints and versions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mireth::platform {

/// The keys the library reads. None is required.
namespace information_keys {
/// Base URL of the session-replay service: scheme, host, optional port and path, no trailing slash. Absent:
/// the build's MIRETH_SR_ENDPOINT.
inline constexpr std::string_view srEndpointUrl = "SR_ENDPOINT_URL";
/// Base URL of the configuration service, of the same form. Log hosts end in its host and port, without its
/// path. Absent: the build's MIRETH_KELDA_ENDPOINT.
inline constexpr std::string_view keldaEndpointUrl = "KELDA_ENDPOINT_URL";
/// The library's version. Absent, in metadata also empty: sent as "Unknown", and an error line each start.
inline constexpr std::string_view vexVersion = "VEX_VERSION";
/// "true" lets the Linux platform speak plain http with any host, not with loopback hosts only.
inline constexpr std::string_view allowInsecureHttp = "ALLOW_INSECURE_HTTP";
/// "phone", "pad", "desktop" or "television": what the Linux platform takes the device for, whatever its
/// chassis says; any other text counts as absent. For development machines.
inline constexpr std::string_view deviceIdiom = "DEVICE_IDIOM";
/// The app's version. Absent: sent as "Unknown".
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
