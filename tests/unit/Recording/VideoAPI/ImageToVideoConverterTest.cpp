// Encoding a chunk: times, readiness, failures, and a real file.
#include "PrivateSide/Recording/VideoAPI/ImageToVideoConverter.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "PrivateSide/Configuration/RecordingError.hpp"
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "tests/support/AsyncPhone.hpp"
#include "tests/support/MemoryFileManager.hpp"
#include "tests/support/RecordingGraphics.hpp"
#include "tests/support/ScriptedAssetWriter.hpp"

namespace mireth {
namespace {

using platform::Image;

Frame frameOf(std::uint32_t pixel) {
    return {Image::filled(100, 200, pixel),
            ScalingMetadataCalculator::calculateScalingMetadata({100, 200}, {250, 500})};
}

class ImageToVideoConverterTest : public ::testing::Test {
  protected:
    std::unique_ptr<ImageToVideoConverter> make(std::size_t frames,
                                                PlaybackConfiguration configuration = {}) {
        auto input = std::make_unique<MediaDataInput>(
            MediaDataInput::platformConstructors(std::make_shared<test::ScriptedWriterFactory>(script_),
                                                 configuration),
            configuration);
        return std::make_unique<ImageToVideoConverter>(std::vector<Frame>(frames, frameOf(0xFF00FF00U)),
                                                       "/chunk.mp4", configuration, std::move(input),
                                                       graphics_, phone_.background);
    }
    std::string render(ImageToVideoConverter& converter) const {
        const auto outcome = phone_.start(phone_.background, converter.render());
        phone_.runUntilIdle();
        return outcome->isDone ? outcome->message() : "still running";
    }
    std::string renderFrames(std::size_t frames) {
        const auto converter = make(frames);
        return render(*converter);
    }

    test::AsyncPhone phone_;
    std::shared_ptr<test::WriterScript> script_ = std::make_shared<test::WriterScript>();
    std::shared_ptr<test::RecordingGraphics> graphics_ = std::make_shared<test::RecordingGraphics>();
};

TEST_F(ImageToVideoConverterTest, FileIsOpenedFedFinishedAndChecked) {
    EXPECT_EQ(renderFrames(2), "");
    EXPECT_EQ(script_->calls,
              (std::vector<std::string>{"makeWriter /chunk.mp4 600 300", "canApplyOutputSettings",
                                        "makeInput", "canAdd", "add", "makePixelBufferAdaptor",
                                        "startWriting", "startSession at 0", "requestMediaDataWhenReady",
                                        "markAsFinished", "finishWriting", "dropped"}));
    EXPECT_EQ(script_->times.size(), 2U);
}

TEST_F(ImageToVideoConverterTest, FrameNIsShownAtNTimesThreeHundredSixHundredths) {
    EXPECT_EQ(renderFrames(20), "");
    ASSERT_EQ(script_->times.size(), 20U);
    for (std::int64_t n = 0; n < 20; ++n) {
        EXPECT_EQ(script_->times[static_cast<std::size_t>(n)], (platform::MediaTime{n * 300, 600}));
    }
}

TEST_F(ImageToVideoConverterTest, SevenFramesEndAtThreeSeconds) {
    EXPECT_EQ(renderFrames(7), "");
    ASSERT_EQ(script_->times.size(), 7U);
    EXPECT_EQ(script_->times.back(), (platform::MediaTime{1800, 600}));
}

TEST_F(ImageToVideoConverterTest, FrameDurationIsDividedInIntegers) {
    PlaybackConfiguration configuration;
    configuration.fps = 7;
    const auto converter = make(3, configuration);
    EXPECT_EQ(render(*converter), "");
    EXPECT_EQ(script_->times.back(), (platform::MediaTime{170, 600})) << "600 / 7 is 85, twice that 170";
}

TEST_F(ImageToVideoConverterTest, FramesAreAppendedOnlyWhileTheInputIsReady) {
    script_->oneFrameAtATime = true;
    const auto converter = make(4);
    const auto outcome = phone_.start(phone_.background, converter->render());
    for (std::size_t expected = 1; expected <= 4; ++expected) {
        phone_.runUntilIdle();
        EXPECT_EQ(script_->times.size(), expected);
        script_->askForMore();
    }
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(script_->appendedWhileNotReady, 0U);
}

TEST_F(ImageToVideoConverterTest, NoPoolDuringConversion) {
    const auto converter = make(1);
    script_->oneFrameAtATime = true;
    script_->ready = false;
    const auto outcome = phone_.start(phone_.background, converter->render());
    phone_.runUntilIdle();
    script_->hasPool = false;
    script_->askForMore();
    phone_.runUntilIdle();
    EXPECT_EQ(outcome->message(), "pixelBufferPool is empty during conversion");
}

TEST_F(ImageToVideoConverterTest, AddFrameReturnsTheAdaptorsResult) {
    PlaybackConfiguration configuration;
    auto input = std::make_unique<MediaDataInput>(
        MediaDataInput::platformConstructors(std::make_shared<test::ScriptedWriterFactory>(script_),
                                             configuration),
        configuration);
    input->initialize("/chunk.mp4");
    input->open();
    ImageToVideoConverter converter({}, "/chunk.mp4", configuration, std::move(input), graphics_,
                                    phone_.background);
    script_->failingFrame = 1;
    EXPECT_TRUE(converter.addFrame(frameOf(0xFF00FF00U), 0));
    EXPECT_FALSE(converter.addFrame(frameOf(0xFF00FF00U), 1));
}

TEST_F(ImageToVideoConverterTest, WriterThatFailsMidwayIsToldByItsStatus) {
    script_->failingFrame = 2;
    script_->endStatus = platform::AssetWriterStatus::failed;
    EXPECT_EQ(renderFrames(5), "Invalid videoWriter status: failed");
    EXPECT_EQ(script_->times.size(), 2U) << "nothing is appended after the failure";
}

TEST_F(ImageToVideoConverterTest, WriterThatFailsWhileItsReadinessIsAwaitedEndsTheWait) {
    script_->oneFrameAtATime = true;
    const auto converter = make(3);
    const auto outcome = phone_.start(phone_.background, converter->render());
    phone_.runUntilIdle();
    EXPECT_FALSE(outcome->isDone);
    script_->endStatus = platform::AssetWriterStatus::failed;
    script_->askForMore = nullptr;
    phone_.runUntilIdle();
    ASSERT_TRUE(outcome->isDone);
    EXPECT_EQ(outcome->message(), "Invalid videoWriter status: failed");
    EXPECT_EQ(script_->times.size(), 1U);
}

TEST_F(ImageToVideoConverterTest, EveryStatusButCompletedFails) {
    using platform::AssetWriterStatus;
    for (const auto status : {AssetWriterStatus::unknown, AssetWriterStatus::writing,
                              AssetWriterStatus::failed, AssetWriterStatus::cancelled}) {
        script_->endStatus = status;
        EXPECT_EQ(renderFrames(1), "Invalid videoWriter status: " + std::string(toString(status)));
    }
}

TEST_F(ImageToVideoConverterTest, FailureToOpenReachesTheCaller) {
    script_->canApply = false;
    EXPECT_EQ(renderFrames(1), "canApplyOutputSettings() failed");
}

TEST_F(ImageToVideoConverterTest, PictureWithoutBitmapFailsAndDropsTheWriter) {
    PlaybackConfiguration configuration;
    std::vector<Frame> frames(1, Frame());
    auto factory = ImageToVideoConverter::makeFactory(std::make_shared<test::ScriptedWriterFactory>(script_),
                                                      graphics_, phone_.background);
    {
        const auto converter = factory(std::move(frames), "/chunk.mp4", configuration);
        const auto outcome = phone_.start(phone_.background, converter->render());
        phone_.runUntilIdle();
        EXPECT_EQ(outcome->message(), "Could not retrieve cgImage from image");
    }
    EXPECT_EQ(std::ranges::count(script_->calls, "finishWriting"), 0);
    EXPECT_EQ(script_->calls.back(), "dropped");
}

TEST_F(ImageToVideoConverterTest, RealEncoderWritesAnMp4File) {
    const auto files = std::make_shared<tests::MemoryFileManager>();
    (void)files->createDirectory("/videos");
    const auto factory =
        ImageToVideoConverter::makeFactory(std::make_shared<platform::OpenH264AssetWriterFactory>(files),
                                           std::make_shared<platform::CairoGraphics>(), phone_.background);
    const auto converter =
        factory(std::vector<Frame>(20, frameOf(0xFF3366CCU)), "/videos/s-0.mp4", PlaybackConfiguration());
    const auto outcome = phone_.start(phone_.background, converter->render());
    phone_.runUntilIdle();
    EXPECT_EQ(outcome->message(), "");
    ASSERT_TRUE(outcome->isDone);
    ASSERT_TRUE(files->files.contains("/videos/s-0.mp4"));
    const std::string& bytes = files->files["/videos/s-0.mp4"];
    EXPECT_EQ(bytes.substr(4, 4), "ftyp");
    EXPECT_NE(bytes.find("avc1"), std::string::npos);
}

TEST_F(ImageToVideoConverterTest, RealEncoderThatCannotStoreFails) {
    const auto files = std::make_shared<tests::MemoryFileManager>();
    (void)files->createDirectory("/videos");
    files->commitFailure = "disk full";
    const auto factory =
        ImageToVideoConverter::makeFactory(std::make_shared<platform::OpenH264AssetWriterFactory>(files),
                                           std::make_shared<platform::CairoGraphics>(), phone_.background);
    const auto converter =
        factory(std::vector<Frame>(2, frameOf(0xFF3366CCU)), "/videos/s-0.mp4", PlaybackConfiguration());
    const auto outcome = phone_.start(phone_.background, converter->render());
    phone_.runUntilIdle();
    EXPECT_EQ(outcome->message(), "Invalid videoWriter status: failed");
    EXPECT_TRUE(files->files.empty());
}

}  // namespace
}  // namespace mireth
