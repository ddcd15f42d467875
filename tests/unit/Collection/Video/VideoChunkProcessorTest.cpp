// From frames to an announced chunk: order, place, log lines, failures.
#include "PrivateSide/Collection/Video/VideoChunkProcessor.hpp"

#include <gtest/gtest.h>

#include "PrivateSide/Configuration/RecordingError.hpp"
#include "tests/support/AsyncPhone.hpp"
#include "tests/support/LogCapture.hpp"
#include "tests/support/MemoryFileManager.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;

const RemoteSessionInfo session{"S1", 1};
constexpr const char* chunkPath = "/caches/mireth/playback/S1-0.mp4";

class VideoChunkProcessorTest : public ::testing::Test {
  protected:
    /// Writes the file, or fails with what the test has set.
    class Converter final : public ImageToVideoConverterProtocol {
      public:
        explicit Converter(VideoChunkProcessorTest& test, std::filesystem::path path)
            : test_(test), path_(std::move(path)) {}
        Task<void> render() override {
            test_.note("render");
            if (test_.failure_) {
                test_.failure_();
            }
            test_.files_->files[path_] = "video";
            co_return;
        }

      private:
        VideoChunkProcessorTest& test_;
        const std::filesystem::path path_;
    };

    VideoChunkProcessorTest() {
        chunks_ = dao_->subscribeToChunks([this](const ChunkData& chunk) {
            note("announce");
            announced_.push_back(chunk);
        });
    }

    MakeImageToVideoConverter makeConverter() {
        return [this](std::vector<Frame> frames, const std::filesystem::path& outputURL,
                      const PlaybackConfiguration& configuration) {
            note("make " + outputURL.string() + " " + std::to_string(frames.size()) + " " +
                 std::to_string(configuration.fps));
            return std::make_unique<Converter>(*this, outputURL);
        };
    }
    /// Every step must be taken in the background.
    void note(const std::string& step) {
        EXPECT_TRUE(phone_.backgroundExecutor->isRunning()) << step;
        steps_.push_back(step);
    }
    std::shared_ptr<test::TaskOutcome> save(std::int64_t number = 0) {
        auto outcome = phone_.start(processor_->saveVideoChunk(std::vector<Frame>(3), session, number, {}));
        EXPECT_TRUE(steps_.empty()) << "nothing is done on the caller's thread";
        phone_.runUntilIdle();
        return outcome;
    }

    test::LogCapture capture_;
    test::AsyncPhone phone_;
    std::shared_ptr<tests::MemoryFileManager> files_ = std::make_shared<tests::MemoryFileManager>();
    std::shared_ptr<SessionDataDao> dao_ = std::make_shared<SessionDataDao>(
        capture_.log(), std::make_shared<EventBuffer>(capture_.log()),
        std::make_shared<PlaybackStorage>(capture_.log(), files_), [](Work work) { work(); });
    std::unique_ptr<VideoChunkProcessor> processor_ = std::make_unique<VideoChunkProcessor>(
        capture_.log(), dao_, makeConverter(), [] { return Date(1700000000.5); },
        makeSerialExecutor(phone_.background));
    std::function<void()> failure_;
    std::vector<std::string> steps_;
    std::vector<ChunkData> announced_;
    AnyCancellable chunks_;
};

TEST_F(VideoChunkProcessorTest, ChunkIsEncodedStoredAnnouncedAndLogged) {
    dao_->addEvent("S1", TimelineEvent{EventName::sessionStartMarker, 5, {}});
    const auto outcome = save();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(steps_,
              (std::vector<std::string>{std::string("make ") + chunkPath + " 3 2", "render", "announce"}));
    ASSERT_EQ(announced_.size(), 1U);
    EXPECT_EQ(announced_[0].session, session);
    EXPECT_EQ(announced_[0].chunkNumber, 0);
    EXPECT_EQ(announced_[0].playbackURL, chunkPath);
    EXPECT_EQ(announced_[0].chunkEndTimestampMillis, 1700000000500);
    EXPECT_EQ(announced_[0].timeline.size(), 1U);
    capture_.expectLines(
        {infoLine(LogTag::playback,
                  std::string(R"(New Video chunk. ["chunkNumber": "0", "path": ")") + chunkPath + "\"]")});
}

TEST_F(VideoChunkProcessorTest, OldFileOfTheNumberIsRemovedFirst) {
    (void)files_->createDirectory("/caches/mireth/playback");
    files_->files[chunkPath] = "old";
    failure_ = [this] { EXPECT_FALSE(files_->files.contains(chunkPath)); };
    EXPECT_TRUE(save()->succeeded());
    EXPECT_EQ(files_->files[chunkPath], "video");
    capture_.take();
}

TEST_F(VideoChunkProcessorTest, FailureIsLoggedAndPassedOn) {
    failure_ = [] { throw RecordingError("canApplyOutputSettings() failed"); };
    const auto outcome = save(4);
    EXPECT_EQ(outcome->message(), "canApplyOutputSettings() failed");
    EXPECT_TRUE(announced_.empty());
    EXPECT_TRUE(files_->files.empty()) << "no file is kept as a chunk";
    capture_.expectLines({errorLine(
        LogTag::playback,
        R"(Failed to create chunk ["chunkNumber": "4", "errorDetails": "canApplyOutputSettings() failed"])")});
}

TEST_F(VideoChunkProcessorTest, EventsOfAFailedChunkStayForTheNext) {
    dao_->addEvent("S1", TimelineEvent{EventName::sessionStartMarker, 5, {}});
    failure_ = [] { throw RecordingError("no"); };
    (void)save();
    steps_.clear();
    failure_ = nullptr;
    (void)save();
    ASSERT_EQ(announced_.size(), 1U);
    EXPECT_EQ(announced_[0].timeline.size(), 1U);
    capture_.take();
}

TEST_F(VideoChunkProcessorTest, OtherErrorsAreLoggedToo) {
    failure_ = [] { throw std::bad_alloc(); };
    EXPECT_NE(save()->error, nullptr);
    EXPECT_EQ(capture_.take().size(), 1U);
    steps_.clear();
    failure_ = [] { throw 42; };
    EXPECT_NE(save()->error, nullptr);
    capture_.expectLines({errorLine(
        LogTag::playback,
        R"(Failed to create chunk ["chunkNumber": "0", "errorDetails": "An error of an unknown kind."])")});
}

TEST_F(VideoChunkProcessorTest, FullStoreTakesNoChunk) {
    (void)files_->createDirectory("/caches/mireth/playback");
    for (int i = 0; i < 180; ++i) {
        files_->files["/caches/mireth/playback/old-" + std::to_string(i) + ".mp4"] = "x";
    }
    const auto outcome = save();
    EXPECT_EQ(outcome->message(), RecordingError::playbackStorageFull().what());
    EXPECT_TRUE(steps_.empty());
    EXPECT_EQ(files_->files.size(), 180U);
    capture_.expectLines(
        {errorLine(LogTag::playback, std::string(R"(Failed to create chunk ["chunkNumber": "0", )") +
                                         R"("errorDetails": ")" +
                                         RecordingError::playbackStorageFull().what() + "\"]")});
}

TEST_F(VideoChunkProcessorTest, HostileSessionIdWritesNothing) {
    const RemoteSessionInfo hostile{"../x", 1};
    const auto outcome = phone_.start(processor_->saveVideoChunk(std::vector<Frame>(1), hostile, 0, {}));
    phone_.runUntilIdle();
    EXPECT_NE(outcome->error, nullptr);
    EXPECT_TRUE(steps_.empty());
    EXPECT_EQ(capture_.take().size(), 1U);
}

TEST_F(VideoChunkProcessorTest, TaskOutlivesTheProcessor) {
    auto outcome = phone_.start(processor_->saveVideoChunk(std::vector<Frame>(1), session, 0, {}));
    processor_.reset();
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(announced_.size(), 1U);
    capture_.take();
}

TEST_F(VideoChunkProcessorTest, TellsOfItsLife) {
    test::LogCapture memory({LogTag::memoryUse});
    {
        const VideoChunkProcessor processor(
            memory.log(), dao_, makeConverter(), [] { return Date(); }, phone_.background);
        memory.expectLines({infoLine(LogTag::memoryUse, "VideoChunkProcessor: Succesfully initialized")});
    }
    memory.expectLines({infoLine(LogTag::memoryUse, "VideoChunkProcessor: Succesfully deinitialized")});
}

}  // namespace
}  // namespace mireth
