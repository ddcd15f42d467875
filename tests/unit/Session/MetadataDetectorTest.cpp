#include "PrivateSide/Detection/Metadata/MetadataDetector.hpp"

#include <gmock/gmock.h>

#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::errorLine;
using testing::ElementsAre;

struct MetadataDetectorTest : testing::Test {
    test::LogCapture capture;
    headless::DeviceValues device;
    headless::TextByKey information{{"CFBundleShortVersionString", "2.3.1"}, {"VEX_VERSION", "1.0.0"}};
    headless::TextByKey defaults;

    std::vector<SrMetadata> detect(bool withModuleBundle = true) {
        const auto bundle = std::make_shared<headless::MemoryInformationDictionary>(information);
        const MetadataDetector detector(capture.log(),
                                        std::make_shared<ClientDetailsProvider>(
                                            std::make_shared<headless::MemoryKeyValueStore>(defaults)),
                                        bundle, withModuleBundle ? bundle : nullptr,
                                        std::make_shared<headless::HeadlessDevice>(device));
        return detector.detectMetadata().metadata;
    }
};

TEST_F(MetadataDetectorTest, ListsSevenEntriesInTheirOrder) {
    EXPECT_THAT(detect(),
                ElementsAre(SrMetadata{SrMetadataType::SdkVersion, "1.0.0"},
                            SrMetadata{SrMetadataType::AppVersion, "2.3.1"},
                            SrMetadata{SrMetadataType::DeviceId, "6F9619FF-8B86-D011-B42D-00C04FC964FF"},
                            SrMetadata{SrMetadataType::Platform, "iOS"},
                            SrMetadata{SrMetadataType::OperatingSystem, "iOS 17.4"},
                            SrMetadata{SrMetadataType::DeviceModel, "Phone"},
                            SrMetadata{SrMetadataType::DeviceCodename, "phone14,2"}));
}

TEST_F(MetadataDetectorTest, ABridgeReportsItsOwnSdkVersion) {
    defaults = {{"MirethClientType", "VEXMobileIOSReactNative"}, {"MirethClientRNSdkVersion", "9.9"}};
    EXPECT_EQ(detect()[0].metadataValue, "9.9");
}

TEST_F(MetadataDetectorTest, ABridgeWithoutAVersionIsLoggedAndUnknown) {
    defaults = {{"MirethClientType", "VEXMobileIOSReactNative"}};
    EXPECT_EQ(detect()[0].metadataValue, "Unknown");
    capture.expectLines({errorLine(LogTag::lifecycle, "VEX React Native SDK version is missing")});
}

TEST_F(MetadataDetectorTest, AMissingVersionIsLoggedAndUnknown) {
    information.erase("VEX_VERSION");
    EXPECT_EQ(detect()[0].metadataValue, "Unknown");
    capture.expectLines({errorLine(LogTag::lifecycle, "VEX iOS SDK version is missing")});
}

TEST_F(MetadataDetectorTest, AnEmptyVersionCountsAsMissing) {
    information["VEX_VERSION"] = "";
    EXPECT_EQ(detect()[0].metadataValue, "Unknown");
    capture.expectLines({errorLine(LogTag::lifecycle, "VEX iOS SDK version is missing")});
}

TEST_F(MetadataDetectorTest, AnAbsentModuleBundleCountsAsMissing) {
    EXPECT_EQ(detect(false)[0].metadataValue, "Unknown");
    capture.expectLines({errorLine(LogTag::lifecycle, "VEX iOS SDK version is missing")});
}

TEST_F(MetadataDetectorTest, ADeviceWithoutAnIdentifierAndAnAppWithoutAVersionAreUnknown) {
    device.identifierForVendor.reset();
    information.erase("CFBundleShortVersionString");
    const auto list = detect();
    EXPECT_EQ(list[1].metadataValue, "Unknown");
    EXPECT_EQ(list[2].metadataValue, "Unknown");
}

}  // namespace
}  // namespace mireth
