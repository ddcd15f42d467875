// The rules of every AssetWriterFactory, and what an implementation gives to be held to them.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "tests/contract/media/DecodedVideo.hpp"
#include "tests/support/Canvas.hpp"
#include "tests/support/MemoryFileManager.hpp"

namespace mireth::platform {

/// A writer with its one input, as a feeder uses it.
struct WriterTrack {
    std::unique_ptr<AssetWriter> writer;
    std::shared_ptr<WriterInput> input;
    std::shared_ptr<PixelBufferAdaptor> adaptor;

    /// Appends a frame painted by `paint(x, y)`.
    template <class Paint>
    bool append(MediaTime time, const Paint& paint) const {
        const auto [status, buffer] = adaptor->pixelBufferPool()->createPixelBuffer();
        EXPECT_EQ(status, 0);
        buffer->lockBaseAddress();
        for (std::size_t y = 0; y < buffer->height(); ++y) {
            for (std::size_t x = 0; x < buffer->width(); ++x) {
                const std::uint32_t word = paint(x, y);
                std::memcpy(buffer->baseAddress() + y * buffer->bytesPerRow() + x * 4, &word, sizeof word);
            }
        }
        buffer->unlockBaseAddress();
        return adaptor->append(buffer, time);
    }
    bool append(MediaTime time, std::uint32_t color = tests::white) const {
        return append(time, [color](std::size_t, std::size_t) { return color; });
    }
    void finish() const {
        input->markAsFinished();
        int completions = 0;
        writer->finishWriting([&completions] { ++completions; });
        EXPECT_EQ(completions, 1);
    }
};

/// Makes the writers under test.
struct AssetWriterAnswer {
    /// Of the tests, too: letters and digits.
    std::string name;
    /// Their files go through the file manager, which the suites read and break.
    std::function<std::shared_ptr<AssetWriterFactory>(std::shared_ptr<FileManager>)> make;

    friend std::ostream& operator<<(std::ostream& out, const AssetWriterAnswer& answer) {
        return out << answer.name;
    }
};

class AssetWriterContract : public testing::TestWithParam<AssetWriterAnswer> {
  protected:
    void SetUp() override { ASSERT_TRUE(files->createDirectory(outputFile.parent_path())); }
    WriterTrack makeTrack(Size size = {250, 500}, std::int32_t timescale = 600, std::int64_t duration = 300) {
        WriterTrack track;
        track.writer = factory->makeWriter(outputFile, FileType::mpeg4, timescale, duration);
        const VideoOutputSettings settings{VideoCodec::h264, size};
        EXPECT_TRUE(track.writer->canApplyOutputSettings(settings, MediaType::video));
        track.input = track.writer->makeInput(MediaType::video, settings);
        EXPECT_TRUE(track.writer->canAdd(*track.input));
        track.writer->add(track.input);
        track.adaptor = track.writer->makePixelBufferAdaptor(track.input, {32, size.width, size.height});
        return track;
    }
    WriterTrack startTrack(Size size = {250, 500}, std::int32_t timescale = 600,
                           std::int64_t duration = 300) {
        WriterTrack track = makeTrack(size, timescale, duration);
        EXPECT_TRUE(track.writer->startWriting());
        track.writer->startSession(MediaTime::zero());
        return track;
    }
    /// The finished file, read back.
    tests::DecodedVideo decoded() { return tests::decodeVideo(files->files[outputFile]); }

    const std::filesystem::path outputFile = "/caches/chunk.mp4";
    const std::shared_ptr<tests::MemoryFileManager> files = std::make_shared<tests::MemoryFileManager>();
    const std::shared_ptr<AssetWriterFactory> factory = GetParam().make(files);
};

class AssetWriterFiles : public AssetWriterContract {};
class AssetWriterStates : public AssetWriterContract {};
class AssetWriterReadiness : public AssetWriterContract {};

inline constexpr auto nameOfAssetWriterAnswer = [](const auto& info) { return info.param.name; };

}  // namespace mireth::platform
