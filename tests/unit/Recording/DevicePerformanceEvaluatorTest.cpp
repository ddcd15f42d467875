// The category that a device's memory puts it into.
#include "PrivateSide/Recording/DevicePerformanceEvaluator.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace mireth {
namespace {

constexpr std::uint64_t mebibyte = 1ULL << 20U;

PerformanceCategory categoryOf(std::uint64_t ramSize) {
    return DevicePerformanceEvaluator(ramSize).getPerformanceCategory();
}

TEST(DevicePerformanceEvaluator, LessThanThreeThousandMebibytesIsSlow) {
    EXPECT_EQ(categoryOf(0), PerformanceCategory::slow);
    EXPECT_EQ(categoryOf(2999 * mebibyte), PerformanceCategory::slow);
    EXPECT_EQ(categoryOf(3000 * mebibyte - 1), PerformanceCategory::slow) << "whole mebibytes, rounded down";
}

TEST(DevicePerformanceEvaluator, FromThreeThousandMebibytesIsAverage) {
    EXPECT_EQ(categoryOf(3000 * mebibyte), PerformanceCategory::average);
    EXPECT_EQ(categoryOf(6000 * mebibyte - 1), PerformanceCategory::average);
}

TEST(DevicePerformanceEvaluator, FromSixThousandMebibytesIsFast) {
    EXPECT_EQ(categoryOf(6000 * mebibyte), PerformanceCategory::fast);
    EXPECT_EQ(categoryOf(std::numeric_limits<std::uint64_t>::max()), PerformanceCategory::fast);
}

TEST(DevicePerformanceEvaluator, TakesTheDevicesPhysicalMemory) {
    class Phone final : public platform::Device {
      public:
        platform::UserInterfaceIdiom userInterfaceIdiom() const override { return {}; }
        std::string model() const override { return {}; }
        std::string name() const override { return {}; }
        std::string systemVersion() const override { return {}; }
        std::string machine() const override { return {}; }
        std::optional<std::string> identifierForVendor() const override { return {}; }
        std::uint64_t physicalMemory() const override { return 4096 * mebibyte; }
    };
    EXPECT_EQ(DevicePerformanceEvaluator(Phone()).getPerformanceCategory(), PerformanceCategory::average);
}

}  // namespace
}  // namespace mireth
