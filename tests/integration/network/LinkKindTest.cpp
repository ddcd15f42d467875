#include "platforms/linux/network/LinkKind.hpp"

#include <net/if_arp.h>

#include "contract/services/TestSupport.hpp"

namespace mireth::platform {

using test::TemporaryDirectory;
using test::writeFile;

TEST(LinkKind, DriversMarkWifi) {
    const TemporaryDirectory sys;
    writeFile(sys / "class/net/a/phy80211/name", "phy0");
    writeFile(sys / "class/net/b/wireless/status", "0");
    writeFile(sys / "class/net/c/uevent", "DEVTYPE=wlan\nINTERFACE=c\nIFINDEX=3\n");
    const auto classify = sysfsLinkClassifier(sys.path());
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(classify({name, ARPHRD_ETHER}), LinkKind::wifi) << name;
    }
}

TEST(LinkKind, DriversHardwareAndNamesMarkCellular) {
    const TemporaryDirectory sys;
    writeFile(sys / "class/net/usb0/uevent", "DEVTYPE=wwan\n");
    const auto classify = sysfsLinkClassifier(sys.path());
    EXPECT_EQ(classify({"usb0", ARPHRD_ETHER}), LinkKind::cellular);
    EXPECT_EQ(classify({"usb1", 519}), LinkKind::cellular) << "raw IP";
    EXPECT_EQ(classify({"ppp0", ARPHRD_PPP}), LinkKind::cellular);
    EXPECT_EQ(classify({"wwan0", ARPHRD_ETHER}), LinkKind::cellular);
    EXPECT_EQ(classify({"rmnet_data0", ARPHRD_ETHER}), LinkKind::cellular);
}

TEST(LinkKind, EverythingElseIsWired) {
    const TemporaryDirectory sys;
    writeFile(sys / "class/net/br0/uevent", "DEVTYPE=bridge\n");
    const auto classify = sysfsLinkClassifier(sys.path());
    EXPECT_EQ(classify({"br0", ARPHRD_ETHER}), LinkKind::wired);
    EXPECT_EQ(classify({"eth0", ARPHRD_ETHER}), LinkKind::wired);
    EXPECT_EQ(classify({"wlan9", ARPHRD_ETHER}), LinkKind::wired) << "a name alone makes no Wi-Fi";
}

}  // namespace mireth::platform
