// A writer on a real file system: what has the file's name already is left alone, and nothing half-made
// stays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"
#include "tests/contract/media/DecodedVideo.hpp"

namespace mireth::platform {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

class AssetWriterOnDisk : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "mireth-writer-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        directory = pattern;
    }
    void TearDown() override { fs::remove_all(directory); }

    /// Writes one frame to `path` and finishes, or drops the writer before it does.
    AssetWriterStatus write(const fs::path& path, bool finish = true) {
        const VideoOutputSettings settings{VideoCodec::h264, {64, 64}};
        const auto writer = factory.makeWriter(path, FileType::mpeg4, 600, 300);
        const auto input = writer->makeInput(MediaType::video, settings);
        writer->add(input);
        const auto adaptor = writer->makePixelBufferAdaptor(input, {32, 64, 64});
        EXPECT_TRUE(writer->startWriting());
        writer->startSession(MediaTime::zero());
        const auto buffer = adaptor->pixelBufferPool()->createPixelBuffer().second;
        EXPECT_TRUE(adaptor->append(buffer, MediaTime::zero()));
        if (finish) {
            writer->finishWriting(nullptr);
        }
        error = writer->errorDescription();
        return writer->status();
    }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
    }

    fs::path directory;
    std::string error;
    OpenH264AssetWriterFactory factory{std::make_shared<PosixFileManager>()};
};

TEST_F(AssetWriterOnDisk, FinishedFileIsPrivateAndPlays) {
    const fs::path path = directory / "0.mp4";
    EXPECT_EQ(write(path), AssetWriterStatus::completed) << error;
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(tests::decodeVideo(contentOf(path)).packets.size(), 1U);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AssetWriterOnDisk, ExistingFileIsLeftAsItWas) {
    const fs::path path = directory / "0.mp4";
    std::ofstream(path) << "mine";
    EXPECT_EQ(write(path), AssetWriterStatus::failed);
    EXPECT_THAT(error, testing::HasSubstr(path.string()));
    EXPECT_EQ(contentOf(path), "mine");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AssetWriterOnDisk, PlantedLinkIsNotFollowed) {
    const fs::path path = directory / "0.mp4";
    const fs::path target = directory / "target";
    fs::create_symlink(target, path);
    EXPECT_EQ(write(path), AssetWriterStatus::failed);
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(path)));
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AssetWriterOnDisk, DirectoryThatIsNotThereFailsTheWriter) {
    EXPECT_EQ(write(directory / "missing" / "0.mp4"), AssetWriterStatus::failed);
    EXPECT_NE(error, "");
    EXPECT_EQ(entries(), 0U);
}

TEST_F(AssetWriterOnDisk, DroppedWriterLeavesNothing) {
    write(directory / "0.mp4", false);
    EXPECT_EQ(entries(), 0U);
}

}  // namespace
}  // namespace mireth::platform
