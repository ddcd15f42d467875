// The states of asset writers, and how they fail.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/contract/media/AssetWriterContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AssetWriterStates);

namespace {

using testing::HasSubstr;

TEST_P(AssetWriterStates, TimesThatDoNotIncreaseFailTheWriter) {
    for (const std::int64_t next :
         {std::int64_t{300}, std::int64_t{299}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max()}) {
        files->files.clear();
        const WriterTrack track = startTrack({64, 64});
        ASSERT_TRUE(track.append({0, 600}));
        ASSERT_TRUE(track.append({300, 600}));
        EXPECT_FALSE(track.append({next, 600}));
        EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
        EXPECT_THAT(track.writer->errorDescription(), HasSubstr(std::to_string(next)));
        EXPECT_FALSE(track.input->isReadyForMoreMediaData());
        EXPECT_FALSE(track.append({9000, 600}));
        track.finish();
        EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
        EXPECT_TRUE(files->files.empty());
    }
}

TEST_P(AssetWriterStates, TimeWithoutATimescaleFailsTheWriter) {
    const WriterTrack track = startTrack({64, 64});
    EXPECT_FALSE(track.append({0, 0}));
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
}

/// A frame of a size of its own, or with nothing behind it.
class ForeignBuffer final : public PixelBuffer {
  public:
    ForeignBuffer(std::size_t width, std::size_t height, std::byte* bytes)
        : width_(width), height_(height), bytes_(bytes) {}
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }
    std::size_t bytesPerRow() const override { return width_ * 4; }
    void lockBaseAddress() override { ++locks; }
    void unlockBaseAddress() override { --locks; }
    std::byte* baseAddress() override { return bytes_; }
    int locks = 0;

  private:
    std::size_t width_;
    std::size_t height_;
    std::byte* bytes_;
};

TEST_P(AssetWriterStates, BuffersNeedNotComeFromThePool) {
    std::vector<std::byte> bytes(64U * 64U * 4U, std::byte{0xFF});
    const auto buffer = std::make_shared<ForeignBuffer>(64, 64, bytes.data());
    const WriterTrack track = startTrack({64, 64});
    EXPECT_TRUE(track.adaptor->append(buffer, {0, 600}));
    EXPECT_EQ(buffer->locks, 0);
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::completed);
}

TEST_P(AssetWriterStates, FrameThatDoesNotFitFailsTheWriter) {
    std::vector<std::byte> bytes(64U * 64U * 4U);
    for (const auto& buffer : {std::make_shared<ForeignBuffer>(32, 64, bytes.data()),
                               std::make_shared<ForeignBuffer>(64, 64, nullptr)}) {
        const WriterTrack track = startTrack({64, 64});
        EXPECT_FALSE(track.adaptor->append(buffer, {0, 600}));
        EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
        EXPECT_NE(track.writer->errorDescription(), "");
        EXPECT_EQ(buffer->locks, 0);
    }
}

TEST_P(AssetWriterStates, NullFrameIsNotAppended) {
    const WriterTrack track = startTrack({64, 64});
    EXPECT_FALSE(track.adaptor->append(nullptr, {0, 600}));
}

TEST_P(AssetWriterStates, TrackWithoutFramesIsNoFile) {
    const WriterTrack track = startTrack({64, 64});
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
    EXPECT_THAT(track.writer->errorDescription(), HasSubstr(outputFile.string()));
    EXPECT_TRUE(files->files.empty());
}

TEST_P(AssetWriterStates, FileAppearsOnlyWhenItIsFinished) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    EXPECT_TRUE(files->files.empty());
    track.input->markAsFinished();
    EXPECT_TRUE(files->files.empty());
    track.finish();
    EXPECT_EQ(files->files.size(), 1U);
}

TEST_P(AssetWriterStates, WhatHasTheNameAlreadyIsLeftAsItWas) {
    files->files[outputFile] = "mine";
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
    EXPECT_THAT(track.writer->errorDescription(), HasSubstr("file exists"));
    EXPECT_EQ(files->files[outputFile], "mine");
}

TEST_P(AssetWriterStates, FileSystemsFailureIsTheWriters) {
    for (std::string tests::MemoryFileManager::* failure :
         {&tests::MemoryFileManager::createFailure, &tests::MemoryFileManager::writeFailure,
          &tests::MemoryFileManager::commitFailure}) {
        (*files).*failure = "the disk is full";
        const WriterTrack track = startTrack({64, 64});
        ASSERT_TRUE(track.append({0, 600}));
        track.finish();
        EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
        EXPECT_THAT(track.writer->errorDescription(), HasSubstr("the disk is full"));
        EXPECT_TRUE(files->files.empty());
        ((*files).*failure).clear();
    }
}

TEST_P(AssetWriterStates, CancelledWriterLeavesNothingAndStaysCancelled) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    track.writer->cancelWriting();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::cancelled);
    EXPECT_FALSE(track.input->isReadyForMoreMediaData());
    EXPECT_FALSE(track.append({300, 600}));
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::cancelled);
    EXPECT_EQ(track.writer->errorDescription(), "");
    EXPECT_TRUE(files->files.empty());
}

TEST_P(AssetWriterStates, CompletedWriterStaysCompleted) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    track.finish();
    track.writer->cancelWriting();
    track.finish();
    EXPECT_FALSE(track.writer->startWriting());
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::completed);
    EXPECT_EQ(files->files.size(), 1U);
}

TEST_P(AssetWriterStates, DroppedWriterLeavesNothingAndItsPartsDoNothing) {
    WriterTrack track = startTrack({64, 64});
    const auto pool = track.adaptor->pixelBufferPool();
    const auto buffer = pool->createPixelBuffer().second;
    ASSERT_TRUE(track.append({0, 600}));
    track.writer.reset();
    EXPECT_TRUE(files->files.empty());
    EXPECT_FALSE(track.input->isReadyForMoreMediaData());
    EXPECT_FALSE(track.adaptor->append(buffer, {300, 600}));
    EXPECT_EQ(track.adaptor->pixelBufferPool(), nullptr);
    track.input->markAsFinished();
    EXPECT_NE(pool->createPixelBuffer().second, nullptr);
}

TEST_P(AssetWriterStates, StepsThroughItsStates) {
    const WriterTrack track = makeTrack({64, 64});
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::unknown);
    EXPECT_EQ(track.adaptor->pixelBufferPool(), nullptr);
    EXPECT_FALSE(track.input->isReadyForMoreMediaData());
    EXPECT_TRUE(track.writer->startWriting());
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::writing);
    EXPECT_NE(track.adaptor->pixelBufferPool(), nullptr);
    EXPECT_FALSE(track.writer->startWriting());
    track.writer->startSession(MediaTime::zero());
    EXPECT_TRUE(track.input->isReadyForMoreMediaData());
    track.input->markAsFinished();
    EXPECT_FALSE(track.input->isReadyForMoreMediaData());
    EXPECT_FALSE(track.append({0, 600}));
}

TEST_P(AssetWriterStates, WritingDoesNotBeginWithoutAnInput) {
    const auto writer = factory->makeWriter(outputFile, FileType::mpeg4, 600, 300);
    EXPECT_FALSE(writer->startWriting());
    EXPECT_EQ(writer->status(), AssetWriterStatus::failed);
}

TEST_P(AssetWriterStates, FinishingWhatHasNotBegunFails) {
    const WriterTrack track = makeTrack({64, 64});
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::failed);
    EXPECT_NE(track.writer->errorDescription(), "");
}

TEST_P(AssetWriterStates, OneInputOfItsOwnIsAdded) {
    const VideoOutputSettings settings{VideoCodec::h264, {64, 64}};
    const auto writer = factory->makeWriter(outputFile, FileType::mpeg4, 600, 300);
    const auto other = factory->makeWriter("/caches/other.mp4", FileType::mpeg4, 600, 300);
    const auto input = writer->makeInput(MediaType::video, settings);
    const auto second = writer->makeInput(MediaType::video, settings);
    EXPECT_FALSE(other->canAdd(*input));
    EXPECT_EQ(other->makePixelBufferAdaptor(input, {32, 64, 64}), nullptr);
    writer->add(input);
    EXPECT_FALSE(writer->canAdd(*second));
    EXPECT_TRUE(writer->startWriting());
    EXPECT_FALSE(writer->canAdd(*second));
}

TEST_P(AssetWriterStates, AdaptorNeedsFittingAttributes) {
    const WriterTrack track = makeTrack({64, 64});
    EXPECT_EQ(track.writer->makePixelBufferAdaptor(track.input, {32, 64, 62}), nullptr);
    EXPECT_EQ(track.writer->makePixelBufferAdaptor(track.input, {24, 64, 64}), nullptr);
    EXPECT_EQ(track.writer->makePixelBufferAdaptor(nullptr, {32, 64, 64}), nullptr);
}

TEST_P(AssetWriterStates, PoolsBuffersAreUsedAgain) {
    const WriterTrack track = startTrack({64, 62});
    const auto pool = track.adaptor->pixelBufferPool();
    auto [status, buffer] = pool->createPixelBuffer();
    ASSERT_EQ(status, 0);
    EXPECT_EQ(buffer->width(), 64U);
    EXPECT_EQ(buffer->height(), 62U);
    EXPECT_GE(buffer->bytesPerRow(), 256U);
    EXPECT_EQ(buffer->baseAddress(), nullptr);
    buffer->lockBaseAddress();
    const std::byte* const address = buffer->baseAddress();
    EXPECT_NE(address, nullptr);
    buffer->unlockBaseAddress();
    EXPECT_EQ(buffer->baseAddress(), nullptr);
    buffer.reset();
    const auto again = pool->createPixelBuffer().second;
    const auto another = pool->createPixelBuffer().second;
    again->lockBaseAddress();
    another->lockBaseAddress();
    EXPECT_EQ(again->baseAddress(), address);
    EXPECT_NE(another->baseAddress(), address);
}

}  // namespace
}  // namespace mireth::platform
