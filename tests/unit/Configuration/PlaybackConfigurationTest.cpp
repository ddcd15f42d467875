#include "PrivateSide/Configuration/PlaybackConfiguration.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace mireth {
namespace {

TEST(PlaybackConfiguration, Defaults) {
    const PlaybackConfiguration configuration;
    EXPECT_EQ(configuration.fps, 2);
    EXPECT_EQ(configuration.secondsPerChunk, 10);
    EXPECT_EQ(configuration.maxRecordMinutes, 30);
    EXPECT_EQ(configuration.kTimescale, 600);
    EXPECT_EQ(configuration.size, (Size{250, 500}));
    EXPECT_EQ(configuration.avCodecKey, platform::VideoCodec::h264);
}

TEST(PlaybackConfiguration, AChunkHas20FramesOf300Units) {
    const PlaybackConfiguration configuration;
    EXPECT_EQ(configuration.framesPerChunk(), 20);
    EXPECT_EQ(configuration.frameDuration().value, 300);
    EXPECT_EQ(configuration.frameDuration().timescale, 600);
    EXPECT_EQ(getSecondsDelayBasedOnFps(configuration.fps).count(), 0.5);
}

TEST(PlaybackConfiguration, FrameNIsShownAtNTimesTheDuration) {
    const PlaybackConfiguration configuration;
    for (int frame = 0; frame < 20; ++frame) {
        const auto time = configuration.presentationTime(frame);
        EXPECT_EQ(time.value, 300 * frame);
        EXPECT_EQ(time.timescale, 600);
    }
}

TEST(PlaybackConfiguration, ADurationThatDoesNotDivideIsRoundedDown) {
    PlaybackConfiguration configuration;
    configuration.fps = 7;
    EXPECT_EQ(configuration.frameDuration().value, 85);
    EXPECT_EQ(configuration.presentationTime(7).value, 595);
}

TEST(PlaybackConfiguration, TheLongestRecordingMakes180Files) {
    EXPECT_EQ(PlaybackConfiguration{}.maxNumberOfFiles(), 180);
}

TEST(PlaybackConfiguration, ChunksOf5SecondsMake360Files) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = 5;
    EXPECT_EQ(configuration.maxNumberOfFiles(), 360);
}

TEST(PlaybackConfiguration, AChunkLengthThatDoesNotDivide60RoundsChunksPerMinuteDown) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = 7;
    EXPECT_EQ(configuration.maxNumberOfFiles(), 8 * 30);
    configuration.secondsPerChunk = 61;
    EXPECT_EQ(configuration.maxNumberOfFiles(), 0);
}

TEST(PlaybackConfigurationDeathTest, AnOverflowingChunkIsFatal) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH((void)configuration.framesPerChunk(), "Fatal error: Multiplication results in an overflow");
}

TEST(PlaybackConfigurationDeathTest, AZeroFrameRateIsFatal) {
    PlaybackConfiguration configuration;
    configuration.fps = 0;
    EXPECT_DEATH((void)configuration.frameDuration(), "Fatal error: Division by zero");
}

TEST(PlaybackConfigurationDeathTest, TheLeastTimescaleByMinusOneIsFatal) {
    PlaybackConfiguration configuration;
    configuration.fps = -1;
    configuration.kTimescale = std::numeric_limits<std::int32_t>::min();
    EXPECT_DEATH((void)configuration.frameDuration(), "Fatal error: Division results in an overflow");
}

TEST(PlaybackConfigurationDeathTest, AnOverflowingFrameTimeIsFatal) {
    const PlaybackConfiguration configuration;
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max() / 300;
    EXPECT_EQ(configuration.presentationTime(last).value, last * 300);
    EXPECT_DEATH((void)configuration.presentationTime(last + 1),
                 "Fatal error: Multiplication results in an overflow");
}

TEST(PlaybackConfigurationDeathTest, AChunkOfZeroSecondsIsFatal) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = 0;
    EXPECT_DEATH((void)configuration.maxNumberOfFiles(), "Fatal error: Division by zero");
}

}  // namespace
}  // namespace mireth
