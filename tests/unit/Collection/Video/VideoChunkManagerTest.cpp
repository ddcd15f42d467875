// Batches and numbers: what closes a chunk, and what slow and failing encodes do to the order.
#include "PrivateSide/Collection/Video/VideoChunkManager.hpp"

#include <gtest/gtest.h>

#include <deque>
#include <limits>

#include "Platform/Async/AsyncEvent.hpp"
#include "PrivateSide/Configuration/RecordingError.hpp"
#include "tests/support/AsyncPhone.hpp"
#include "tests/support/LogCapture.hpp"

namespace mireth {
namespace {

using platform::Image;
using test::infoLine;

const RemoteSessionInfo session{"S1", 1};

/// Takes chunks and keeps each until the test lets it through.
class HeldProcessor final : public VideoChunkProcessorProtocol {
  public:
    struct Chunk {
        std::vector<Frame> frames;
        std::string sessionId;
        std::int64_t number;
    };

    Task<void> saveVideoChunk(std::vector<Frame> frames, RemoteSessionInfo forSession,
                              std::int64_t chunkNumber, PlaybackConfiguration) override {
        chunks.push_back({std::move(frames), forSession.sessionId, chunkNumber});
        co_await gate.wait();
        gate = isOpen ? gate : AsyncEvent();
        if (failures > 0) {
            --failures;
            throw RecordingError("no encoder");
        }
    }
    /// Lets the one that is waiting through.
    void letThrough() const { gate.set(); }
    /// Nothing waits any more.
    void open() {
        isOpen = true;
        gate.set();
    }

    std::deque<Chunk> chunks;
    AsyncEvent gate;
    bool isOpen = false;
    int failures = 0;
};

class VideoChunkManagerTest : public ::testing::Test {
  protected:
    /// A picture that bears a number.
    static Image picture(std::uint32_t number) { return Image::filled(1, 1, number); }
    static std::vector<std::uint32_t> numbersOf(const std::vector<Frame>& frames) {
        std::vector<std::uint32_t> numbers;
        for (const Frame& frame : frames) {
            numbers.push_back(frame.image.pixels()[0]);
        }
        return numbers;
    }
    std::shared_ptr<test::TaskOutcome> record(std::uint32_t number, const RemoteSessionInfo& to = session) {
        return phone_.start(manager_->recordFrame(to, picture(number), {}));
    }
    void recordMany(std::uint32_t from, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            (void)record(from + i);
        }
    }
    static PlaybackConfiguration shortChunks() {
        PlaybackConfiguration configuration;
        configuration.secondsPerChunk = 1;
        return configuration;
    }
    void useShortChunks() {
        manager_ = std::make_unique<VideoChunkManager>(capture_.log(), shortChunks(), processor_);
    }

    test::LogCapture capture_;
    test::AsyncPhone phone_;
    std::shared_ptr<HeldProcessor> processor_ = std::make_shared<HeldProcessor>();
    std::unique_ptr<VideoChunkManager> manager_ =
        std::make_unique<VideoChunkManager>(capture_.log(), PlaybackConfiguration(), processor_);
};

TEST_F(VideoChunkManagerTest, TheTwentiethFrameSavesTheNineteenthDoesNot) {
    recordMany(0, 19);
    phone_.runUntilIdle();
    EXPECT_TRUE(processor_->chunks.empty());
    EXPECT_FALSE(manager_->isFrameBufferEmpty());
    const auto twentieth = record(19);
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 1U);
    EXPECT_EQ(processor_->chunks[0].frames.size(), 20U);
    EXPECT_EQ(processor_->chunks[0].number, 0);
    EXPECT_TRUE(manager_->isFrameBufferEmpty());
    EXPECT_FALSE(twentieth->isDone) << "its task is the one that saves";
    processor_->open();
    phone_.runUntilIdle();
    EXPECT_TRUE(twentieth->succeeded());
}

TEST_F(VideoChunkManagerTest, FrameThatDoesNotFillTheChunkIsDoneAtOnce) {
    const auto recorded = record(0);
    phone_.mainQueue->runAll();
    EXPECT_TRUE(recorded->succeeded());
}

TEST_F(VideoChunkManagerTest, FramesStandInTheOrderOfTheCallsWhenTheirTasksDoNot) {
    useShortChunks();
    processor_->open();
    auto first = manager_->recordFrame(session, picture(1), {});
    auto second = manager_->recordFrame(session, picture(2), {});
    (void)phone_.start(std::move(second));
    (void)phone_.start(std::move(first));
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 1U);
    EXPECT_EQ(numbersOf(processor_->chunks[0].frames), (std::vector<std::uint32_t>{1, 2}));
}

TEST_F(VideoChunkManagerTest, FrameKeepsItsImageAndScaling) {
    useShortChunks();
    processor_->open();
    ScalingMetadata scaling;
    scaling.scaledSize = {3, 4};
    (void)phone_.start(manager_->recordFrame(session, picture(7), scaling));
    (void)phone_.start(manager_->recordFrame(session, picture(8), {}));
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 1U);
    EXPECT_EQ(processor_->chunks[0].frames[0].scalingMetadata, scaling);
    EXPECT_EQ(processor_->chunks[0].frames[1].scalingMetadata, ScalingMetadata::zero());
    EXPECT_EQ(processor_->chunks[0].sessionId, "S1");
}

TEST_F(VideoChunkManagerTest, PartlyFilledBufferIsSavedOnDemand) {
    recordMany(0, 7);
    processor_->open();
    const auto saved = phone_.start(manager_->saveVideoChunk(session));
    phone_.runUntilIdle();
    EXPECT_TRUE(saved->succeeded());
    ASSERT_EQ(processor_->chunks.size(), 1U);
    EXPECT_EQ(processor_->chunks[0].frames.size(), 7U);
    EXPECT_TRUE(manager_->isFrameBufferEmpty());
}

TEST_F(VideoChunkManagerTest, ChunksAreNumberedFromZero) {
    useShortChunks();
    processor_->open();
    for (std::uint32_t i = 0; i < 6; ++i) {
        (void)record(i);
        phone_.runUntilIdle();
    }
    ASSERT_EQ(processor_->chunks.size(), 3U);
    for (std::int64_t number = 0; number < 3; ++number) {
        EXPECT_EQ(processor_->chunks[static_cast<std::size_t>(number)].number, number);
    }
}

TEST_F(VideoChunkManagerTest, SlowEncodeNeitherReordersNorDropsNorDoubles) {
    useShortChunks();
    recordMany(0, 7);
    phone_.runUntilIdle();
    EXPECT_EQ(processor_->chunks.size(), 1U) << "the others wait for their turn";
    for (std::size_t waiting = 1; waiting <= 3; ++waiting) {
        processor_->letThrough();
        phone_.runUntilIdle();
    }
    ASSERT_EQ(processor_->chunks.size(), 3U);
    for (std::uint32_t number = 0; number < 3; ++number) {
        EXPECT_EQ(processor_->chunks[number].number, number);
        EXPECT_EQ(numbersOf(processor_->chunks[number].frames),
                  (std::vector<std::uint32_t>{2 * number, 2 * number + 1}));
    }
    EXPECT_FALSE(manager_->isFrameBufferEmpty()) << "the seventh frame";
}

TEST_F(VideoChunkManagerTest, FramesCapturedMeanwhileStartTheNextChunk) {
    recordMany(0, 3);
    const auto saved = phone_.start(manager_->saveVideoChunk(session));
    EXPECT_TRUE(manager_->isFrameBufferEmpty());
    (void)record(3);
    EXPECT_FALSE(manager_->isFrameBufferEmpty());
    processor_->open();
    phone_.runUntilIdle();
    EXPECT_TRUE(saved->succeeded());
    EXPECT_EQ(numbersOf(processor_->chunks[0].frames), (std::vector<std::uint32_t>{0, 1, 2}));
}

TEST_F(VideoChunkManagerTest, FailedChunksNumberIsUsedAgainAndItsFramesAreGone) {
    useShortChunks();
    processor_->open();
    processor_->failures = 1;
    (void)record(0);
    const auto failed = record(1);
    phone_.runUntilIdle();
    EXPECT_EQ(failed->message(), "no encoder");
    EXPECT_TRUE(manager_->isFrameBufferEmpty());
    (void)record(2);
    const auto next = record(3);
    phone_.runUntilIdle();
    EXPECT_TRUE(next->succeeded());
    ASSERT_EQ(processor_->chunks.size(), 2U);
    EXPECT_EQ(processor_->chunks[1].number, 0);
    EXPECT_EQ(numbersOf(processor_->chunks[1].frames), (std::vector<std::uint32_t>{2, 3}));
}

TEST_F(VideoChunkManagerTest, ChunkThatWaitedBehindAFailureTakesItsNumber) {
    useShortChunks();
    processor_->failures = 1;
    recordMany(0, 4);
    phone_.runUntilIdle();
    processor_->letThrough();
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 2U);
    EXPECT_EQ(processor_->chunks[1].number, 0) << "the number is taken when the turn comes";
    processor_->open();
    phone_.runUntilIdle();
}

TEST_F(VideoChunkManagerTest, ClearDropsFramesAndNumbersFromZero) {
    useShortChunks();
    processor_->open();
    recordMany(0, 3);
    phone_.runUntilIdle();
    manager_->clear();
    EXPECT_TRUE(manager_->isFrameBufferEmpty());
    recordMany(10, 2);
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 2U);
    EXPECT_EQ(processor_->chunks[1].number, 0);
    EXPECT_EQ(numbersOf(processor_->chunks[1].frames), (std::vector<std::uint32_t>{10, 11}));
}

TEST_F(VideoChunkManagerTest, ChunkOfAnEarlierSessionLeavesTheNewNumbersAlone) {
    useShortChunks();
    recordMany(0, 4);
    phone_.runUntilIdle();
    manager_->clear();
    const RemoteSessionInfo next{"S2", 2};
    (void)record(10, next);
    (void)record(11, next);
    processor_->open();
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 3U);
    EXPECT_EQ(processor_->chunks[0].sessionId, "S1");
    EXPECT_EQ(processor_->chunks[0].number, 0);
    EXPECT_EQ(processor_->chunks[1].sessionId, "S1");
    EXPECT_EQ(processor_->chunks[1].number, 1);
    EXPECT_EQ(processor_->chunks[2].sessionId, "S2");
    EXPECT_EQ(processor_->chunks[2].number, 0);
}

TEST_F(VideoChunkManagerTest, TasksOutliveTheManager) {
    useShortChunks();
    recordMany(0, 4);
    phone_.runUntilIdle();
    manager_.reset();
    processor_->open();
    phone_.runUntilIdle();
    EXPECT_EQ(processor_->chunks.size(), 2U);
}

TEST_F(VideoChunkManagerTest, TaskThatNobodyAwaitsHoldsNobodyUp) {
    useShortChunks();
    processor_->open();
    recordMany(0, 1);
    {
        const auto dropped = manager_->recordFrame(session, picture(1), {});
    }
    recordMany(2, 2);
    phone_.runUntilIdle();
    ASSERT_EQ(processor_->chunks.size(), 1U);
    EXPECT_EQ(processor_->chunks[0].number, 0);
}

TEST_F(VideoChunkManagerTest, TellsOfItsLife) {
    test::LogCapture memory({LogTag::memoryUse});
    {
        const VideoChunkManager manager(memory.log(), {}, processor_);
        memory.expectLines({infoLine(LogTag::memoryUse, "VideoChunkManager: Succesfully initialized")});
    }
    memory.expectLines({infoLine(LogTag::memoryUse, "VideoChunkManager: Succesfully deinitialized")});
}

using VideoChunkManagerDeathTest = VideoChunkManagerTest;

TEST_F(VideoChunkManagerDeathTest, OverflowingChunkLengthIsFatal) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(VideoChunkManager(capture_.log(), configuration, processor_), "Fatal error: Multiplication");
}

}  // namespace
}  // namespace mireth
