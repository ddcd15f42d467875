#include "PrivateSide/Configuration/DeviceDetector.hpp"

#include <gtest/gtest.h>

#include <memory>

#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using platform::UserInterfaceIdiom;
using test::errorLine;
using test::LogCapture;

DeviceType typeOf(LogCapture& capture, UserInterfaceIdiom idiom) {
    headless::DeviceValues values;
    values.idiom = idiom;
    return DeviceDetector(capture.log(), std::make_shared<headless::HeadlessDevice>(values)).detectDevice();
}

TEST(DeviceDetector, OnlyThePhoneIdiomIsAPhone) {
    LogCapture capture;
    EXPECT_EQ(typeOf(capture, UserInterfaceIdiom::phone), DeviceType::phone);
    for (const auto idiom : {UserInterfaceIdiom::pad, UserInterfaceIdiom::desktop,
                             UserInterfaceIdiom::television, UserInterfaceIdiom::unspecified}) {
        EXPECT_EQ(typeOf(capture, idiom), DeviceType::other);
    }
}

TEST(DeviceType, RawValues) {
    EXPECT_EQ(rawValue(DeviceType::phone), "phone");
    EXPECT_EQ(rawValue(DeviceType::other), "other");
}

TEST(IsDeviceTypeSupported, APhoneIsAndNothingIsLogged) {
    LogCapture capture;
    EXPECT_TRUE(isDeviceTypeSupported(capture.log(), DeviceType::phone));
    capture.expectLines({});
}

TEST(IsDeviceTypeSupported, AnyOtherIsNotAndTheLogSaysWhich) {
    LogCapture capture;
    EXPECT_FALSE(isDeviceTypeSupported(capture.log(), DeviceType::other));
    capture.expectLines(
        {errorLine(LogTag::lifecycle, R"(Device is not supported. ["deviceType": "other"])")});
}

}  // namespace
}  // namespace mireth
