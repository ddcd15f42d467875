// What is in the files that asset writers leave.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <limits>

#include "tests/contract/media/AssetWriterContract.hpp"

namespace mireth::platform {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AssetWriterFiles);

namespace {

using testing::HasSubstr;
using tests::DecodedVideo;
using tests::VideoPacket;

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST_P(AssetWriterFiles, ChunkOfTwentyFramesLastsExactlyTenSeconds) {
    const WriterTrack track = startTrack();
    for (int n = 0; n < 20; ++n) {
        ASSERT_TRUE(track.append({n * 300, 600}, [n](std::size_t x, std::size_t) {
            return x / 10 == static_cast<std::size_t>(n) ? tests::red : tests::white;
        }));
    }
    track.finish();
    EXPECT_EQ(track.writer->status(), AssetWriterStatus::completed);
    EXPECT_EQ(track.writer->errorDescription(), "");
    const DecodedVideo video = decoded();
    EXPECT_EQ(video.streams, 1U);
    EXPECT_EQ(video.codec, "h264");
    EXPECT_EQ(video.sampleEntry, "avc1");
    EXPECT_EQ(video.pixelFormat, "yuv420p");
    EXPECT_EQ(video.width, 250);
    EXPECT_EQ(video.height, 500);
    EXPECT_EQ(video.timescale, 600);
    EXPECT_EQ(video.duration, 6000);
    EXPECT_EQ(video.fileDuration, 10'000'000);
    ASSERT_EQ(video.packets.size(), 20U);
    for (int n = 0; n < 20; ++n) {
        const VideoPacket& packet = video.packets[static_cast<std::size_t>(n)];
        EXPECT_EQ(packet.time, n * 300);
        EXPECT_EQ(packet.duration, 300);
    }
    EXPECT_TRUE(video.packets.front().isKeyFrame);
    EXPECT_EQ(video.frames.size(), 20U);
    EXPECT_EQ(video.errors, 0);
}

TEST_P(AssetWriterFiles, ShorterChunkLastsAsLongAsItsFrames) {
    const WriterTrack track = startTrack();
    for (int n = 0; n < 7; ++n) {
        ASSERT_TRUE(track.append({n * 300, 600}));
    }
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 7U);
    EXPECT_EQ(video.packets.back().time, 1800);
    EXPECT_EQ(video.packets.back().duration, 300);
    EXPECT_EQ(video.duration, 2100);
    EXPECT_EQ(video.fileDuration, 3'500'000);
}

TEST_P(AssetWriterFiles, SingleFrameLastsTheDefaultDuration) {
    const WriterTrack track = startTrack();
    ASSERT_TRUE(track.append({0, 600}));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 1U);
    EXPECT_EQ(video.packets[0], (VideoPacket{0, 300, true}));
    EXPECT_EQ(video.duration, 300);
}

TEST_P(AssetWriterFiles, UnevenTimesAreKeptAndTheLastFrameLastsAsLongAsTheOneBefore) {
    const WriterTrack track = startTrack();
    const std::array<std::int64_t, 4> times{0, 1, 601, 1000};
    for (const std::int64_t time : times) {
        ASSERT_TRUE(track.append({time, 600}));
    }
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 4U);
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_EQ(video.packets[i].time, times[i]);
    }
    EXPECT_EQ(video.packets.back().duration, 399);
    EXPECT_EQ(video.duration, 1399);
}

TEST_P(AssetWriterFiles, TimesOfAnotherScaleAreConverted) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 1}));
    ASSERT_TRUE(track.append({1, 2}));
    ASSERT_TRUE(track.append({1000, 1000}));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 3U);
    EXPECT_EQ(video.packets[1].time, 300);
    EXPECT_EQ(video.packets[2].time, 600);
}

TEST_P(AssetWriterFiles, TimesCountFromTheSessionsStart) {
    const WriterTrack track = makeTrack({64, 64});
    ASSERT_TRUE(track.writer->startWriting());
    track.writer->startSession({2, 1});
    ASSERT_TRUE(track.append({1200, 600}));
    ASSERT_TRUE(track.append({1500, 600}));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 2U);
    EXPECT_EQ(video.packets[0].time, 0);
    EXPECT_EQ(video.packets[1].time, 300);
}

TEST_P(AssetWriterFiles, TrackThatBeginsLaterKeepsItsTimes) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({300, 600}));
    ASSERT_TRUE(track.append({600, 600}));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 2U);
    EXPECT_EQ(video.packets[0].time, 300);
    EXPECT_EQ(video.packets[1].time, 600);
}

TEST_P(AssetWriterFiles, TimesBeyond32BitsAreKept) {
    constexpr std::int64_t late = std::int64_t{1} << 33;
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({late, 600}));
    ASSERT_TRUE(track.append({late + 300, 600}));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.packets.size(), 2U);
    EXPECT_EQ(video.packets[0].time, late);
    EXPECT_EQ(video.packets[1].time, late + 300);
}

TEST_P(AssetWriterFiles, TimescalesAreKeptWhateverTheyAre) {
    for (const std::int32_t timescale : {1, 25, 600, 90'000}) {
        files->files.clear();
        const WriterTrack track = startTrack({64, 64}, timescale, 1);
        ASSERT_TRUE(track.append({0, timescale}));
        ASSERT_TRUE(track.append({1, timescale}));
        track.finish();
        const DecodedVideo video = decoded();
        EXPECT_EQ(video.timescale, timescale);
        ASSERT_EQ(video.packets.size(), 2U) << timescale;
        EXPECT_EQ(video.packets[1].time, 1);
        EXPECT_EQ(video.duration, 2);
    }
}

TEST_P(AssetWriterFiles, FramesAreUprightAndTheirColoursSurvive) {
    const std::array<std::uint32_t, 8> colors{tests::red,   tests::green, tests::blue, tests::white,
                                              tests::black, 0xFFBCBCBCU,  0xFFE1E1E1U, 0xFFFF8040U};
    const auto paint = [&colors](std::size_t x, std::size_t y) {
        return colors[std::min<std::size_t>(y / 125, 3) * 2 + (x < 124 ? 0 : 1)];
    };
    const WriterTrack track = startTrack();
    for (int n = 0; n < 3; ++n) {
        ASSERT_TRUE(track.append({n * 300, 600}, paint));
    }
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.frames.size(), 3U);
    for (const Image& frame : video.frames) {
        for (std::size_t index = 0; index < colors.size(); ++index) {
            const std::size_t x = index % 2 == 0 ? 62 : 187;
            const std::size_t y = index / 2 * 125 + 62;
            for (const unsigned shift : {16U, 8U, 0U}) {
                EXPECT_NEAR(tests::channel(frame, x, y, shift),
                            static_cast<int>((colors[index] >> shift) & 0xFFU), 4)
                    << index << " shift " << shift;
            }
        }
    }
}

TEST_P(AssetWriterFiles, ColoursAreDescribedInTheFile) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    track.finish();
    const DecodedVideo video = decoded();
    EXPECT_EQ(video.range, "tv");
    EXPECT_EQ(video.primaries, "bt709");
    EXPECT_EQ(video.transfer, "iec61966-2-1");
    EXPECT_EQ(video.matrix, "smpte170m");
    EXPECT_THAT(files->files[outputFile], HasSubstr("colrnclx"));
}

TEST_P(AssetWriterFiles, TransparencyLiesOnBlack) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}, 0x00000000U));
    ASSERT_TRUE(track.append({300, 600}, 0x80800000U));
    track.finish();
    const DecodedVideo video = decoded();
    ASSERT_EQ(video.frames.size(), 2U);
    EXPECT_NEAR(tests::channel(video.frames[0], 32, 32, 16), 0, 3);
    EXPECT_NEAR(tests::channel(video.frames[1], 32, 32, 16), 0x80, 4);
    EXPECT_NEAR(tests::channel(video.frames[1], 32, 32, 8), 0, 4);
}

TEST_P(AssetWriterFiles, MarginsStayBlackBesideAPicture) {
    const WriterTrack track = startTrack();
    for (int n = 0; n < 3; ++n) {
        ASSERT_TRUE(track.append({n * 300, 600}, [n](std::size_t x, std::size_t y) {
            const bool margin = x < 10 || x >= 240;
            return margin                                          ? tests::black
                   : (x + y + static_cast<std::size_t>(n)) % 8 < 4 ? tests::white
                                                                   : tests::blue;
        }));
    }
    track.finish();
    for (const Image& frame : decoded().frames) {
        for (const unsigned shift : {16U, 8U, 0U}) {
            EXPECT_LE(tests::channel(frame, 2, 250, shift), 2);
            EXPECT_LE(tests::channel(frame, 248, 250, shift), 2);
        }
    }
}

TEST_P(AssetWriterFiles, SameFramesMakeTheSameFile) {
    std::array<std::string, 2> made;
    for (std::string& file : made) {
        files->files.clear();
        const WriterTrack track = startTrack();
        for (int n = 0; n < 5; ++n) {
            ASSERT_TRUE(track.append({n * 300, 600}, [n](std::size_t x, std::size_t y) {
                return 0xFF000000U |
                       static_cast<std::uint32_t>((x * y + 97U * static_cast<unsigned>(n)) * 2654435761U) >>
                           8U;
            }));
        }
        track.finish();
        file = files->files[outputFile];
    }
    EXPECT_FALSE(made[0].empty());
    EXPECT_TRUE(made[0] == made[1]);
}

TEST_P(AssetWriterFiles, IndexLiesBeforeTheFrames) {
    const WriterTrack track = startTrack({64, 64});
    for (int n = 0; n < 300; ++n) {
        // Uneven times make the longest index.
        ASSERT_TRUE(track.append({n * 300 + n % 2, 600}));
    }
    track.finish();
    ASSERT_EQ(track.writer->status(), AssetWriterStatus::completed) << track.writer->errorDescription();
    const std::string& file = files->files[outputFile];
    EXPECT_LT(file.find("moov"), file.find("mdat"));
    EXPECT_EQ(decoded().packets.size(), 300U);
}

TEST_P(AssetWriterFiles, MovieCountsTimeAsTheTrackDoes) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    ASSERT_TRUE(track.append({1, 600}));
    track.finish();
    // ISO 14496-12, movie header: version and flags, two dates, time scale, duration.
    const std::string& file = files->files[outputFile];
    const std::size_t header = file.find("mvhd");
    ASSERT_NE(header, std::string::npos);
    const auto word = [&](std::size_t offset) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value = value << 8U | static_cast<std::uint8_t>(file[header + 4 + offset + i]);
        }
        return value;
    };
    EXPECT_EQ(word(0), 0U);
    EXPECT_EQ(word(4), 0U) << "a date would make every file another";
    EXPECT_EQ(word(12), 600U);
    EXPECT_EQ(word(16), 2U);
}

TEST_P(AssetWriterFiles, ParameterSetsStandInTheSampleEntryOnly) {
    const WriterTrack track = startTrack({64, 64});
    ASSERT_TRUE(track.append({0, 600}));
    ASSERT_TRUE(track.append({300, 600}, tests::red));
    track.finish();
    constexpr int slice = 1;
    constexpr int keyFrameSlice = 5;
    EXPECT_THAT(decoded().nalUnitTypes,
                testing::ElementsAre(keyFrameSlice, testing::AnyOf(slice, keyFrameSlice)));
}

TEST_P(AssetWriterFiles, ProbeOfTheFileAgrees) {
    const WriterTrack track = startTrack();
    for (int n = 0; n < 20; ++n) {
        ASSERT_TRUE(track.append({n * 300, 600}));
    }
    track.finish();
    const auto path =
        std::filesystem::temp_directory_path() / ("mireth-asset-writer-" + std::to_string(getpid()) + ".mp4");
    std::ofstream(path, std::ios::binary) << files->files[outputFile];
    const std::string command =
        "ffprobe -v error -count_packets -show_entries "
        "stream=codec_name,width,height,time_base,duration,nb_read_packets -of csv=p=0 " +
        path.string() + " 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::array<char, 512> line{};
    const std::size_t count = std::fread(line.data(), 1, line.size() - 1, pipe);
    EXPECT_EQ(pclose(pipe), 0);
    std::filesystem::remove(path);
    EXPECT_EQ(std::string(line.data(), count), "h264,250,500,1/600,10.000000,20\n");
}

TEST_P(AssetWriterFiles, OnlyWholeEvenBoundedH264VideoIsAccepted) {
    const auto writer = factory->makeWriter(outputFile, FileType::mpeg4, 600, 300);
    const auto accepts = [&](double width, double height) {
        const VideoOutputSettings settings{VideoCodec::h264, {width, height}};
        const bool accepted = writer->canApplyOutputSettings(settings, MediaType::video);
        EXPECT_EQ(writer->makeInput(MediaType::video, settings) != nullptr, accepted);
        return accepted;
    };
    EXPECT_TRUE(accepts(250, 500));
    EXPECT_TRUE(accepts(16, 16));
    EXPECT_TRUE(accepts(1080, 1920));
    for (const double odd : {0.0, -250.0, 251.0, 250.5, 2.0, 1e6, 1e300, infinity, noNumber}) {
        EXPECT_FALSE(accepts(odd, 500)) << odd;
        EXPECT_FALSE(accepts(250, odd)) << odd;
    }
    const Size size{250, 500};
    EXPECT_FALSE(writer->canApplyOutputSettings({VideoCodec::hevc, size}, MediaType::video));
    EXPECT_FALSE(writer->canApplyOutputSettings({VideoCodec::h264, size}, MediaType::audio));
    EXPECT_EQ(writer->makeInput(MediaType::audio, {VideoCodec::h264, size}), nullptr);
}

TEST_P(AssetWriterFiles, EveryAcceptedSizeIsEncoded) {
    for (const Size size : {Size{16, 16}, Size{18, 34}, Size{1920, 1080}, Size{1080, 2400}}) {
        files->files.clear();
        const WriterTrack track = startTrack(size);
        ASSERT_TRUE(track.append({0, 600}, tests::green)) << track.writer->errorDescription();
        track.finish();
        const DecodedVideo video = decoded();
        EXPECT_EQ(video.width, size.width);
        EXPECT_EQ(video.height, size.height);
        ASSERT_EQ(video.frames.size(), 1U);
        EXPECT_NEAR(tests::channel(video.frames[0], 8, 8, 8), 0xFF, 4);
    }
}

TEST_P(AssetWriterFiles, WriterWithoutAPlaceOrATimescaleIsNotMade) {
    EXPECT_EQ(factory->makeWriter("", FileType::mpeg4, 600, 300), nullptr);
    EXPECT_EQ(factory->makeWriter(outputFile, FileType::mpeg4, 0, 300), nullptr);
    EXPECT_EQ(factory->makeWriter(outputFile, FileType::mpeg4, -600, 300), nullptr);
    EXPECT_EQ(factory->makeWriter(outputFile, FileType::mpeg4, 600, 0), nullptr);
}

}  // namespace
}  // namespace mireth::platform
