// Pictures that cannot be put into a file, and the units that a file is made of.
#include "platforms/linux/media/Mp4Muxer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <span>
#include <string>

#include "platforms/linux/media/NalUnits.hpp"

namespace mireth::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Bytes = std::vector<std::byte>;

Bytes bytes(std::initializer_list<int> values) {
    Bytes result;
    for (const int value : values) {
        result.push_back(static_cast<std::byte>(value));
    }
    return result;
}

std::vector<Bytes> unitsOf(std::initializer_list<int> values) {
    const Bytes stream = bytes(values);
    std::vector<Bytes> units;
    for (const auto& unit : nalUnitsOf(stream)) {
        units.emplace_back(unit.begin(), unit.end());
    }
    return units;
}

/// A sequence set, a picture set, and one picture of two units.
class Mp4MuxerTest : public ::testing::Test {
  protected:
    Mp4MuxerTest() {
        samples_[0].bytes = bytes({0, 0, 0, 1, 0x65, 1, 2, 0, 0, 1, 0x41, 3});
        samples_[0].duration = 300;
        samples_[0].isKeyFrame = true;
    }

    std::expected<Bytes, std::string> mux() {
        Mp4VideoTrack track;
        track.width = 250;
        track.height = 500;
        track.timescale = 600;
        track.parameterSets = parameterSets_;
        return muxMp4(track, samples_);
    }

    Bytes parameterSets_ = bytes({0, 0, 0, 1, 0x67, 100, 0, 31, 5, 0, 0, 0, 1, 0x68, 7, 7, 7});
    std::vector<Mp4Sample> samples_{1};
};

TEST_F(Mp4MuxerTest, EachUnitStandsAfterItsLength) {
    const auto file = mux();
    ASSERT_TRUE(file) << file.error();
    const Bytes end = bytes({'m', 'd', 'a', 't', 0, 0, 0, 3, 0x65, 1, 2, 0, 0, 0, 2, 0x41, 3});
    EXPECT_TRUE(std::ranges::equal(end, std::span(*file).last(end.size())));
}

TEST_F(Mp4MuxerTest, TheDecoderIsConfiguredByTheParameterSets) {
    const auto file = mux();
    ASSERT_TRUE(file) << file.error();
    const Bytes expected = bytes({'a', 'v', 'c', 'C', 1, 100, 0,    31, 0xFF, 0xE1, 0,    5,    0x67, 100,
                                  0,   31,  5,   1,   0, 4,   0x68, 7,  7,    7,    0xFD, 0xF8, 0xF8, 0});
    EXPECT_FALSE(std::ranges::search(*file, expected).empty());
}

TEST_F(Mp4MuxerTest, WithoutAPictureThereIsNoFile) {
    samples_.clear();
    EXPECT_FALSE(mux());
}

TEST_F(Mp4MuxerTest, WithoutASequenceSetThereIsNoFile) {
    for (const auto& sets : {bytes({}), bytes({0, 0, 0, 1, 0x68, 7, 7, 7}), bytes({0, 0, 0, 1, 0x67, 100})}) {
        parameterSets_ = sets;
        const auto file = mux();
        ASSERT_FALSE(file);
        EXPECT_THAT(file.error(), HasSubstr("how it is coded"));
    }
}

TEST_F(Mp4MuxerTest, ParameterSetsThatHaveNoRoomMakeNoFile) {
    parameterSets_.insert(parameterSets_.end(), 70'000, std::byte{1});
    EXPECT_FALSE(mux());
}

TEST(NalUnits, LieBetweenStartCodesOfEitherLength) {
    EXPECT_THAT(unitsOf({0, 0, 1, 5, 6, 0, 0, 0, 1, 7, 0, 0, 1, 8, 0, 9}),
                ElementsAre(bytes({5, 6}), bytes({7}), bytes({8, 0, 9})));
}

TEST(NalUnits, PaddingIsNoPartOfThem) {
    EXPECT_THAT(unitsOf({9, 9, 0, 0, 1, 5, 0, 0, 0, 0, 0, 1, 0, 0, 1, 6, 0, 0}),
                ElementsAre(bytes({5}), bytes({6})));
    EXPECT_THAT(unitsOf({0, 0, 1}), IsEmpty());
    EXPECT_THAT(unitsOf({5, 6}), IsEmpty());
}

}  // namespace
}  // namespace mireth::platform
