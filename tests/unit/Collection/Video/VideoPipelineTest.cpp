// The whole road of a frame into a file: real threads, real encoder, real files.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "PrivateSide/Collection/Video/VideoChunkManager.hpp"
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"
#include "tests/support/AsyncPhone.hpp"
#include "tests/support/LogCapture.hpp"

namespace mireth {
namespace {

namespace fs = std::filesystem;

class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string path = fs::temp_directory_path() / "mireth-video-XXXXXX";
        path_ = ::mkdtemp(path.data());
    }
    ~TemporaryDirectory() { fs::remove_all(path_); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

/// What ffprobe says about the file's video track, one value a line.
std::string probe(const fs::path& file) {
    const std::string command =
        "ffprobe -v error -count_packets -select_streams v -show_entries "
        "stream=codec_name,width,height,time_base,duration,nb_read_packets -of csv=p=0 '" +
        file.string() + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::array<char, 512> text{};
    const std::size_t length = std::fread(text.data(), 1, text.size(), pipe.get());
    return {text.data(), length};
}

class VideoPipeline : public ::testing::Test {
  protected:
    static PlaybackConfiguration configuration() { return {}; }

    /// Runs the main queue until the task is done.
    bool finish(const std::shared_ptr<test::TaskOutcome>& outcome) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!outcome->isDone && std::chrono::steady_clock::now() < deadline) {
            if (!mainQueue_->runAll()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        return outcome->succeeded();
    }
    std::shared_ptr<test::TaskOutcome> record(std::uint32_t pixel) {
        const auto image = platform::Image::filled(390, 844, pixel);
        const auto scaling =
            ScalingMetadataCalculator::calculateScalingMetadata(image.size(), configuration().size);
        return test::AsyncPhone::start(main_, manager_.recordFrame(session_, image, scaling));
    }

    void TearDown() override { capture_.expectLines({}); }

    /// Lasts as long as the process, as a host's log does: what a thread of the pool drops last may write its
    /// memory-use line when the fixture is gone.
    static test::LogCapture& lastingCapture() {
        static auto* const captures = new std::vector<std::unique_ptr<test::LogCapture>>;
        captures->push_back(std::make_unique<test::LogCapture>(std::set<LogTag>{}));
        return *captures->back();
    }

    const RemoteSessionInfo session_{"S1", 1};
    test::LogCapture& capture_ = lastingCapture();
    TemporaryDirectory caches_;
    std::shared_ptr<test::ManualMainQueue> mainQueue_ = std::make_shared<test::ManualMainQueue>();
    std::shared_ptr<platform::ThreadPoolExecutor> threads_ =
        std::make_shared<platform::ThreadPoolExecutor>(3);
    Executor main_ = makeMainExecutor(mainQueue_);
    Executor background_ = makeBackgroundExecutor(threads_);
    Executor fileExecutor_ = makeSerialExecutor(background_);
    std::shared_ptr<platform::PosixFileManager> files_ =
        std::make_shared<platform::PosixFileManager>(platform::PosixFileManagerOptions{caches_.path(), true});
    std::shared_ptr<SessionDataDao> dao_ = std::make_shared<SessionDataDao>(
        capture_.log(), std::make_shared<EventBuffer>(capture_.log()),
        std::make_shared<PlaybackStorage>(capture_.log(), files_),
        [executor = fileExecutor_](Work work) { asio::post(executor, std::move(work)); });
    std::shared_ptr<VideoChunkProcessor> processor_ = std::make_shared<VideoChunkProcessor>(
        capture_.log(), dao_,
        ImageToVideoConverter::makeFactory(std::make_shared<platform::OpenH264AssetWriterFactory>(files_),
                                           std::make_shared<platform::CairoGraphics>(), background_),
        [] { return Date(1); }, fileExecutor_);
    VideoChunkManager manager_{capture_.log(), configuration(), processor_};
};

TEST_F(VideoPipeline, ChunksAreFilesWithExactTimes) {
    std::mutex mutex;
    std::vector<ChunkData> announced;
    const auto subscription = dao_->subscribeToChunks([&](const ChunkData& chunk) {
        const std::lock_guard lock(mutex);
        announced.push_back(chunk);
    });
    for (std::uint32_t frame = 0; frame < 47; ++frame) {
        (void)record(0xFF000000U | frame * 0x030201U);
        mainQueue_->runAll();
    }
    ASSERT_TRUE(finish(test::AsyncPhone::start(main_, manager_.saveVideoChunk(session_))));

    const std::lock_guard lock(mutex);
    ASSERT_EQ(announced.size(), 3U);
    for (std::size_t number = 0; number < 3; ++number) {
        EXPECT_EQ(announced[number].chunkNumber, static_cast<std::int64_t>(number));
    }
    EXPECT_EQ(probe(announced[0].playbackURL), "h264,250,500,1/600,10.000000,20\n");
    EXPECT_EQ(probe(announced[1].playbackURL), "h264,250,500,1/600,10.000000,20\n");
    EXPECT_EQ(probe(announced[2].playbackURL), "h264,250,500,1/600,3.500000,7\n");
}

TEST_F(VideoPipeline, ChunkIsFinishedWithoutItsMainThread) {
    std::promise<void> announced;
    const auto subscription = dao_->subscribeToChunks([&](const ChunkData&) { announced.set_value(); });
    for (std::uint32_t frame = 0; frame < 40; ++frame) {
        (void)record(0xFF00FF00U);
    }
    mainQueue_->runAll();
    processor_.reset();
    mainQueue_.reset();
    ASSERT_EQ(announced.get_future().wait_for(std::chrono::seconds(60)), std::future_status::ready);

    // Behind the encoding task, which has nowhere to come back to.
    std::promise<void> behind;
    asio::post(fileExecutor_, [&behind] { behind.set_value(); });
    behind.get_future().wait();
}

}  // namespace
}  // namespace mireth
