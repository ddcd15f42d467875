// Asks the kernel for the network path as it is now. Used by NetlinkPathMonitor.
#pragma once

#include <optional>

#include "MirethVex/Platform/PathMonitor.hpp"
#include "platforms/linux/network/LinkKind.hpp"

namespace mireth::platform {

/// The path that the kernel's routes and interfaces make now; nothing when the kernel cannot be asked, or
/// its tables changed under every one of a few attempts.
std::optional<NetworkPath> readNetworkPath(const LinkClassifier& classify);

}  // namespace mireth::platform
