#include "PrivateSide/Detection/WindowDimentions/WindowDimensionsDetector.hpp"

#include <gtest/gtest.h>

#include "support/LogCapture.hpp"

namespace mireth {
namespace {

platform::Image image(std::size_t width, std::size_t height) {
    return platform::Image::filled(width, height, 0xff000000U);
}

TEST(WindowDimensionsDetector, TheFirstImageYieldsItsSizeInPixels) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{3});
    EXPECT_EQ(detector.detectWindowDimensionsChange(image(390, 844)), (WindowDimensionsDetails{1170, 2532}));
}

TEST(WindowDimensionsDetector, AnImageOfTheSameSizeYieldsNothing) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{3});
    (void)detector.detectWindowDimensionsChange(image(390, 844));
    EXPECT_EQ(detector.detectWindowDimensionsChange(image(390, 844)), std::nullopt);
}

TEST(WindowDimensionsDetector, ATurnedImageYieldsASecondSize) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{2});
    (void)detector.detectWindowDimensionsChange(image(390, 844));
    EXPECT_EQ(detector.detectWindowDimensionsChange(image(844, 390)), (WindowDimensionsDetails{1688, 780}));
}

TEST(WindowDimensionsDetector, AChangeOfOneDimensionCounts) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{1});
    (void)detector.detectWindowDimensionsChange(image(390, 844));
    EXPECT_TRUE(detector.detectWindowDimensionsChange(image(390, 843)).has_value());
}

TEST(WindowDimensionsDetector, AfterClearTheSameSizeCountsAsNew) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{1});
    (void)detector.detectWindowDimensionsChange(image(390, 844));
    detector.clear();
    EXPECT_TRUE(detector.detectWindowDimensionsChange(image(390, 844)).has_value());
}

TEST(WindowDimensionsDetector, AnImageWithMorePixelsAPointIsMeasuredInPoints) {
    test::LogCapture capture;
    WindowDimensionsDetector detector(capture.log(), DimensionConverter{3});
    const auto details =
        detector.detectWindowDimensionsChange(platform::Image::filled(780, 1688, 0xff000000U, 2.0));
    EXPECT_EQ(details, (WindowDimensionsDetails{1170, 2532}));
}

}  // namespace
}  // namespace mireth
