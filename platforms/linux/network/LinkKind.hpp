// What kind of network an interface belongs to. Used by NetlinkPathMonitor.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace mireth::platform {

enum class LinkKind { wired, wifi, cellular };

/// An interface as the kernel describes it.
struct LinkDescription {
    std::string name;
    /// ARPHRD_… of <net/if_arp.h>.
    unsigned hardwareType = 0;
};

/// Tells the kind of an interface. Called on the monitor's thread.
using LinkClassifier = std::function<LinkKind(const LinkDescription&)>;

/// Looks into the interface's directory under `sysfs`/class/net. Wi-Fi: it has "wireless" or "phy80211", or
/// its uevent says DEVTYPE=wlan. Cellular: DEVTYPE=wwan, raw IP or PPP hardware, or a name that begins with
/// wwan or rmnet. Wired: anything else, also tunnels and bridges, whatever lies beneath them.
LinkClassifier sysfsLinkClassifier(std::filesystem::path sysfs = "/sys");

}  // namespace mireth::platform
