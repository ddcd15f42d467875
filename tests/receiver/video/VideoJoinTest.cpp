// The joining of videos by itself: it reads them through their sources and from no file.
#include "video/VideoJoin.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/MemoryBytes.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/VideoTools.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

/// Counts how many are open, and fails from a place on, as a disk may.
class WatchedBytes final : public ByteSource {
  public:
    WatchedBytes(std::string bytes, std::uint64_t readable, int& open)
        : bytes_(std::move(bytes)), readable_(readable), open_(open) {
        ++open_;
    }
    ~WatchedBytes() override { --open_; }
    std::uint64_t size() const override { return bytes_.size(); }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override {
        return offset + into.size() <= readable_ && bytes_.readAt(offset, into);
    }

  private:
    MemoryBytes bytes_;
    const std::uint64_t readable_;
    int& open_;
};

class VideoJoinTest : public testing::Test {
  protected:
    VideoPart part(const std::string& name, const std::string& bytes, std::int64_t atMillis,
                   std::uint64_t readable = UINT64_MAX) {
        return {.name = name,
                .open = [this, bytes, readable]() -> Stored<std::unique_ptr<ByteSource>> {
                    auto source = std::make_unique<WatchedBytes>(bytes, readable, open_);
                    mostOpen_ = std::max(mostOpen_, open_);
                    return source;
                },
                .atMillis = atMillis,
                .mostMillis = 10'000};
    }

    const TemporaryDirectory directory_;
    const std::string output_ = directory_.file("whole.mp4");
    const std::string video_ = encodedVideo("testsrc=");
    int open_ = 0;
    int mostOpen_ = 0;
};

TEST_F(VideoJoinTest, ReadsOnePartAtATimeFromItsSource) {
    const auto joined =
        joinVideos({part("a", video_, 0), part("b", video_, 10'000), part("c", video_, 20'000)}, output_);
    ASSERT_TRUE(joined) << joined.error();
    EXPECT_EQ(packetTimes(probe(output_)).size(), 60U);
    EXPECT_EQ(complaintsOfDecoding(output_), "");
    EXPECT_EQ(mostOpen_, 1);
    EXPECT_EQ(open_, 0);
}

TEST_F(VideoJoinTest, APartThatCannotBeOpenedIsNamed) {
    const VideoPart gone{.name = "chunk 7",
                         .open = [] { return std::unexpected(std::string("it is gone")); }};
    EXPECT_EQ(joinVideos({part("a", video_, 0), gone}, output_).error(), "chunk 7: it is gone");
    EXPECT_EQ(open_, 0);
}

TEST_F(VideoJoinTest, APartThatCannotBeReadToItsEndIsNamed) {
    for (const auto readable : {std::size_t{0}, std::size_t{100}, video_.size() - 1}) {
        const auto joined = joinVideos({part("chunk 7", video_, 0, readable)}, output_);
        ASSERT_FALSE(joined) << readable;
        EXPECT_TRUE(joined.error().starts_with("chunk 7: ")) << joined.error();
        EXPECT_EQ(open_, 0);
    }
}

TEST_F(VideoJoinTest, APartWhosePicturesCannotBeReadIsNamed) {
    // What is joined has its tables first; a picture of noise is read in more than one piece.
    ASSERT_TRUE(joinVideos({part("a", encodedVideo("life=ratio=0.5:seed=1:", "main", 1), 0)}, output_));
    const auto tablesFirst = fileText(output_);
    ASSERT_LT(tablesFirst.find("moov"), tablesFirst.find("mdat"));
    for (const auto readable : {std::size_t{60'000}, tablesFirst.size() - 1}) {
        const auto joined = joinVideos({part("chunk 7", tablesFirst, 0, readable)}, output_);
        ASSERT_FALSE(joined) << readable;
        EXPECT_TRUE(joined.error().starts_with("chunk 7: ")) << joined.error();
    }
    EXPECT_EQ(open_, 0);
}

TEST_F(VideoJoinTest, APartWithoutAVideoTrackIsNamed) {
    EXPECT_TRUE(joinVideos({part("chunk 7", "no video", 0)}, output_).error().starts_with("chunk 7: "));
    EXPECT_EQ(open_, 0);
}

}  // namespace
}  // namespace mireth::receiver
