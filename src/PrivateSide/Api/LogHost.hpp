// The address that log lines are posted to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mireth {

/// `https://` + label + "." + the host and port of the configuration service + the log path. The label is the
/// data centre in lower case with "-" for "_". Nothing when the label could be more than one label of a host
/// name (RFC 1123), or when the result, read again, is not exactly that host: a data centre comes from the
/// network and must not choose another destination.
std::optional<std::string> logUrl(std::string_view dataCenter, std::string_view keldaBaseUrl);

}  // namespace mireth
