#include "platforms/linux/system/LinuxDevice.hpp"

#include <sys/utsname.h>

#include "TestSupport.hpp"
#include "platforms/linux/system/ChassisIdiom.hpp"

namespace mireth::platform {

using test::TemporaryDirectory;
using test::writeFile;
using Idiom = UserInterfaceIdiom;

namespace {

constexpr const char* machineInfo = "etc/machine-info";
constexpr const char* treeChassis = "sys/firmware/devicetree/base/chassis-type";
constexpr const char* treeModel = "sys/firmware/devicetree/base/model";
constexpr const char* dmiChassis = "sys/class/dmi/id/chassis_type";
constexpr const char* dmiProduct = "sys/class/dmi/id/product_name";

/// The files of one made-up device.
class DeviceRoot {
  public:
    DeviceRoot& with(const char* path, std::string_view content) {
        writeFile(root_ / path, content);
        return *this;
    }
    LinuxDevice device(std::optional<Idiom> idiom = {}, std::string vendor = "V") const {
        return LinuxDevice({.root = root_.path(), .idiom = idiom, .vendor = std::move(vendor)});
    }

  private:
    TemporaryDirectory root_;
};

}  // namespace

TEST(LinuxDevice, MachineInfoNamesTheIdiom) {
    const std::pair<const char*, Idiom> names[] = {
        {"handset", Idiom::phone},        {"tablet", Idiom::pad},           {"laptop", Idiom::desktop},
        {"desktop", Idiom::desktop},      {"convertible", Idiom::desktop},  {"server", Idiom::desktop},
        {"watch", Idiom::unspecified},    {"embedded", Idiom::unspecified}, {"vm", Idiom::unspecified},
        {"container", Idiom::unspecified}};
    for (const auto& [name, idiom] : names) {
        DeviceRoot root;
        root.with(machineInfo, std::string("# comment\nCHASSIS=\"") + name + "\"\n").with(dmiChassis, "11\n");
        EXPECT_EQ(root.device().userInterfaceIdiom(), idiom) << name;
    }
}

TEST(LinuxDevice, TheDeviceTreeCountsBeforeDmi) {
    DeviceRoot root;
    root.with(treeChassis, std::string_view("handset\0", 8)).with(dmiChassis, "30\n");
    EXPECT_EQ(root.device().userInterfaceIdiom(), Idiom::phone);
}

TEST(LinuxDevice, DmiNumbersTheIdiom) {
    const std::pair<const char*, Idiom> types[] = {
        {"3", Idiom::desktop},      {"9\n", Idiom::desktop},    {"11", Idiom::phone},
        {"30", Idiom::pad},         {"31", Idiom::desktop},     {"1", Idiom::unspecified},
        {"2", Idiom::unspecified},  {"99", Idiom::unspecified}, {"", Idiom::unspecified},
        {"x3", Idiom::unspecified}, {"3x", Idiom::unspecified}};
    for (const auto& [type, idiom] : types) {
        DeviceRoot root;
        root.with(dmiChassis, type);
        EXPECT_EQ(root.device().userInterfaceIdiom(), idiom) << type;
    }
}

TEST(LinuxDevice, TheHostMayKnowTheIdiomBetter) {
    DeviceRoot root;
    root.with(machineInfo, "CHASSIS=desktop");
    EXPECT_EQ(root.device(Idiom::television).userInterfaceIdiom(), Idiom::television);
}

TEST(LinuxDevice, ModelNameAndVersionComeFromTheSystemsFiles) {
    DeviceRoot root;
    root.with(treeModel, std::string_view("Pine \"Phone\" 1.2\0", 17))
        .with(dmiProduct, "Other\n")
        .with(machineInfo, "PRETTY_HOSTNAME=\"Zo\u00eb's \\\"phone\\\"\"\n")
        .with("etc/os-release", "NAME=X\nVERSION_ID='17.4'\n");
    const auto device = root.device();
    EXPECT_EQ(device.model(), "Pine \"Phone\" 1.2");
    EXPECT_EQ(device.name(), "Zo\u00eb's \"phone\"");
    EXPECT_EQ(device.systemVersion(), "17.4");
}

TEST(LinuxDevice, WithoutThemTheNextSourceCounts) {
    DeviceRoot root;
    root.with(dmiProduct, "Board 7\n").with("usr/lib/os-release", "VERSION_ID=12");
    const auto device = root.device();
    utsname kernel{};
    uname(&kernel);
    EXPECT_EQ(device.model(), "Board 7");
    EXPECT_EQ(device.systemVersion(), "12");
    EXPECT_EQ(device.name(), kernel.nodename);
    EXPECT_EQ(device.machine(), kernel.machine);
}

TEST(LinuxDevice, AnEmptySystemHasNothingToSay) {
    const auto device = DeviceRoot().device();
    EXPECT_EQ(device.userInterfaceIdiom(), Idiom::unspecified);
    EXPECT_EQ(device.model(), "");
    EXPECT_EQ(device.systemVersion(), "");
    EXPECT_EQ(device.identifierForVendor(), std::nullopt);
}

TEST(LinuxDevice, TextsThatAreNotUtf8CountAsAbsent) {
    DeviceRoot root;
    root.with(treeModel, "\xff\xfe")
        .with(dmiProduct, "Board")
        .with("etc/os-release", "VERSION_ID=\xed\xa0\x80");
    EXPECT_EQ(root.device().model(), "Board");
    EXPECT_EQ(root.device().systemVersion(), "");
}

TEST(LinuxDevice, TheVendorIdentifierDoesNotShowTheMachineId) {
    const std::string id = "3d1219c7c4c5404aaa1f6d2a48adfda4";
    DeviceRoot root;
    root.with("etc/machine-id", id + "\n");
    const auto first = root.device().identifierForVendor();
    ASSERT_TRUE(first);
    // SHA-256 of "identifierForVendor:V:" and the machine-id, cut to 16 bytes, with the UUID's own bits.
    EXPECT_EQ(*first, "672A07C6-6604-4892-A671-D658D8EF9609");
    EXPECT_EQ(first, root.device().identifierForVendor());
    EXPECT_NE(first, root.device({}, "W").identifierForVendor()) << "another vendor sees another one";
}

TEST(LinuxDevice, AMachineIdThatIsNoneGivesNoIdentifier) {
    for (const char* content : {"", "uninitialized\n", "00000000000000000000000000000000\n", "3d12\n",
                                "3D1219C7C4C5404AAA1F6D2A48ADFDA4\n", "3d1219c7c4c5404aaa1f6d2a48adfdag\n"}) {
        DeviceRoot root;
        root.with("etc/machine-id", content);
        EXPECT_EQ(root.device().identifierForVendor(), std::nullopt) << content;
    }
}

}  // namespace mireth::platform
