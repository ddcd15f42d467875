#include "platforms/linux/network/LinkKind.hpp"

#include <net/if_arp.h>

#include <system_error>
#include <utility>

#include "platforms/linux/system/FileIo.hpp"
#include "platforms/linux/system/KeyValueFile.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint64_t maxUeventBytes = 4096;
// Not in the C library's header: the kernel's ARPHRD_RAWIP.
constexpr unsigned rawIp = 519;

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::string deviceType(const std::filesystem::path& directory) {
    const auto content = readSmallFile((directory / "uevent").native(), maxUeventBytes).value_or("");
    const auto values = parseKeyValueFile(content);
    const auto found = values.find("DEVTYPE");
    return found == values.end() ? std::string() : found->second;
}

LinkKind classify(const std::filesystem::path& sysfs, const LinkDescription& link) {
    const auto directory = sysfs / "class" / "net" / link.name;
    const std::string type = deviceType(directory);
    if (isThere(directory / "wireless") || isThere(directory / "phy80211") || type == "wlan") {
        return LinkKind::wifi;
    }
    const bool hasMobileHardware = link.hardwareType == rawIp || link.hardwareType == ARPHRD_PPP;
    const bool hasMobileName = link.name.starts_with("wwan") || link.name.starts_with("rmnet");
    return type == "wwan" || hasMobileHardware || hasMobileName ? LinkKind::cellular : LinkKind::wired;
}

}  // namespace

LinkClassifier sysfsLinkClassifier(std::filesystem::path sysfs) {
    return [sysfs = std::move(sysfs)](const LinkDescription& link) { return classify(sysfs, link); };
}

}  // namespace mireth::platform
