// Opening a video file: the order of the checks, and the words for each failure.
#include "PrivateSide/Recording/VideoAPI/MediaDataInput.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "PrivateSide/Configuration/RecordingError.hpp"
#include "tests/support/ScriptedAssetWriter.hpp"

namespace mireth {
namespace {

using Calls = std::vector<std::string>;

class MediaDataInputTest : public ::testing::Test {
  protected:
    MediaDataInput make(PlaybackConfiguration configuration = {}) {
        auto constructors = MediaDataInput::platformConstructors(
            std::make_shared<test::ScriptedWriterFactory>(script_), configuration);
        if (writerConstructor_) {
            constructors.avAssetWriterConstructor = writerConstructor_;
        }
        return {std::move(constructors), configuration};
    }
    static std::string failureOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const RecordingError& error) {
            return error.what();
        }
        return "none";
    }
    std::string failureOfInitialize() {
        auto input = make();
        return failureOf([&input] { input.initialize("/chunk.mp4"); });
    }
    std::string failureOfOpen() {
        auto input = make();
        input.initialize("/chunk.mp4");
        const std::string failure = failureOf([&input] { input.open(); });
        EXPECT_EQ(input.isOpen(), failure == "none");
        return failure;
    }

    std::shared_ptr<test::WriterScript> script_ = std::make_shared<test::WriterScript>();
    MediaDataInput::AssetWriterConstructor writerConstructor_;
};

TEST_F(MediaDataInputTest, ChecksStandInTheirOrder) {
    {
        auto input = make();
        input.initialize("/chunk.mp4");
        input.open();
        EXPECT_TRUE(input.isOpen());
    }
    EXPECT_EQ(script_->calls,
              (Calls{"makeWriter /chunk.mp4 600 300", "canApplyOutputSettings", "makeInput", "canAdd", "add",
                     "makePixelBufferAdaptor", "startWriting", "startSession at 0", "dropped"}));
}

TEST_F(MediaDataInputTest, SettingsComeFromTheConfiguration) {
    PlaybackConfiguration configuration;
    configuration.size = {320, 640};
    configuration.avCodecKey = platform::VideoCodec::hevc;
    auto input = make(configuration);
    input.initialize("/chunk.mp4");
    EXPECT_EQ(script_->settings.codec, platform::VideoCodec::hevc);
    EXPECT_EQ(script_->settings.size, (Size{320, 640}));
    EXPECT_EQ(script_->attributes.pixelFormatType, 32);
    EXPECT_EQ(script_->attributes.width, 320);
    EXPECT_EQ(script_->attributes.height, 640);
}

TEST_F(MediaDataInputTest, FailingConstructor) {
    writerConstructor_ = [](const std::filesystem::path&,
                            platform::FileType) -> std::unique_ptr<platform::AssetWriter> {
        throw std::runtime_error("no such directory");
    };
    EXPECT_EQ(failureOfInitialize(), "AVAssetWriter() failed");
    writerConstructor_ = nullptr;
    script_->makesWriter = false;
    EXPECT_EQ(failureOfInitialize(), "AVAssetWriter() failed") << "a platform without a writer";
}

TEST_F(MediaDataInputTest, NoWriterResults) {
    writerConstructor_ = [](const std::filesystem::path&, platform::FileType) {
        return std::unique_ptr<platform::AssetWriter>();
    };
    EXPECT_EQ(failureOfInitialize(), "Failed to create the Asset Writer object");
}

TEST_F(MediaDataInputTest, WriterThatCannotApplyTheSettings) {
    script_->canApply = false;
    EXPECT_EQ(failureOfInitialize(), "canApplyOutputSettings() failed");
    EXPECT_EQ(script_->calls.back(), "dropped") << "and nothing was written";
}

TEST_F(MediaDataInputTest, NoInputResults) {
    script_->makesInput = false;
    EXPECT_EQ(failureOfInitialize(), "Failed to create video writer input");
}

TEST_F(MediaDataInputTest, InputThatCannotBeAdded) {
    script_->canAdd = false;
    EXPECT_EQ(failureOfInitialize(), "canAddInput() returned false");
    EXPECT_EQ(std::ranges::count(script_->calls, "add"), 0);
}

TEST_F(MediaDataInputTest, WritingThatDoesNotStart) {
    script_->starts = false;
    EXPECT_EQ(failureOfOpen(), "startWriting() failed");
    EXPECT_EQ(std::ranges::count(script_->calls, "startSession at 0"), 0);
}

TEST_F(MediaDataInputTest, NoPool) {
    script_->hasPool = false;
    EXPECT_EQ(failureOfOpen(), "nil pixelBufferPool");
}

TEST_F(MediaDataInputTest, WhatIsAbsentSaysSo) {
    auto input = make();
    EXPECT_EQ(failureOf([&] { (void)input.getVideoWriter(); }), "videoWriter is nil");
    EXPECT_EQ(failureOf([&] { (void)input.getVideoWriterInput(); }), "videoWriterInput is nil");
    EXPECT_EQ(failureOf([&] { (void)input.getPixelBufferAdaptor(); }), "videoWriterInput is nil");
    EXPECT_EQ(failureOf([&] { input.open(); }), "videoWriter is nil");
    script_->makesAdaptor = false;
    input.initialize("/chunk.mp4");
    EXPECT_EQ(failureOf([&] { (void)input.getPixelBufferAdaptor(); }), "videoWriterInput is nil");
}

}  // namespace
}  // namespace mireth
