// MP4 files that are sound and ones that lie.
#include "video/Mp4Boxes.hpp"

#include <gtest/gtest.h>

#include "support/MemoryBytes.hpp"
#include "support/Mp4Builder.hpp"

namespace mireth::receiver {
namespace {

using test::bigEndian;
using test::box;
using test::mp4;
using test::Mp4Shape;
using test::track;
using test::wideBox;

std::expected<Mp4Facts, std::string> inspect(const std::string& file) {
    test::MemoryBytes bytes(file);
    return inspectMp4(bytes);
}

std::string errorOf(const std::string& file) {
    const auto facts = inspect(file);
    return facts ? "" : facts.error();
}

const std::string ftyp = box("ftyp", "isom");

TEST(Mp4Boxes, TellsFramesAndDuration) {
    const auto facts = inspect(mp4());
    ASSERT_TRUE(facts) << facts.error();
    EXPECT_EQ(facts->frames, 20);
    EXPECT_EQ(facts->durationMillis, 10'000);
}

TEST(Mp4Boxes, ReadsTheWideFormsToo) {
    const auto facts = inspect(
        ftyp +
        wideBox("moov", track({.frames = 3, .duration = 901, .bytesPerFrame = 1, .wideHeader = true})));
    ASSERT_TRUE(facts) << facts.error();
    EXPECT_EQ(facts->frames, 3);
    EXPECT_EQ(facts->durationMillis, 1502);
}

TEST(Mp4Boxes, TheLastBoxMayReachToTheEnd) {
    EXPECT_EQ(errorOf(ftyp + box("moov", track({})) + bigEndian(0, 4) + "mdat" + std::string(500, 'x')), "");
}

TEST(Mp4Boxes, SamplesMayShareOneSize) {
    const auto table = box("stsz", bigEndian(0, 4) + bigEndian(10, 4) + bigEndian(7, 4));
    const auto video = box("trak", box("mdia", test::mediaHeader({}) + box("hdlr", bigEndian(0, 8) + "vide") +
                                                   box("minf", box("stbl", table))));
    const auto facts = inspect(ftyp + box("moov", video));
    ASSERT_TRUE(facts) << facts.error();
    EXPECT_EQ(facts->frames, 7);
}

TEST(Mp4Boxes, SkipsTracksThatAreNoVideo) {
    const auto facts =
        inspect(ftyp + box("moov", track({.frames = 99, .bytesPerFrame = 0, .handler = "soun"}) +
                                       track({.bytesPerFrame = 1})));
    ASSERT_TRUE(facts) << facts.error();
    EXPECT_EQ(facts->frames, 20);
    EXPECT_EQ(errorOf(ftyp + box("moov", track({.handler = "soun"}))), "there is no video track");
}

TEST(Mp4Boxes, RefusesWhatIsNoMp4) {
    EXPECT_EQ(errorOf(""), "box \"moov\" is missing");
    EXPECT_EQ(errorOf("abc"), "a box begins 3 bytes before its parent ends");
    EXPECT_EQ(errorOf(ftyp), "box \"moov\" is missing");
    EXPECT_EQ(errorOf(box("moov", track({}))), "box \"ftyp\" is not the first and only one of its kind");
    EXPECT_EQ(errorOf(ftyp + ftyp), "box \"ftyp\" is not the first and only one of its kind");
    EXPECT_EQ(errorOf(ftyp + box("moov", track({})) + box("moov", track({}))), "box \"moov\" stands twice");
    EXPECT_EQ(errorOf(ftyp + box("moov", "")), "there is no video track");
    EXPECT_EQ(errorOf(mp4() + box("moof", "")), "the video is in fragments");
}

TEST(Mp4Boxes, RefusesSizesThatLie) {
    EXPECT_EQ(errorOf(ftyp + bigEndian(100, 4) + "mdat"),
              "box \"mdat\" says it has 100 bytes where 8 are left");
    EXPECT_EQ(errorOf(ftyp + bigEndian(7, 4) + "mdat"), "box \"mdat\" says it has 7 bytes where 8 are left");
    EXPECT_EQ(errorOf(ftyp + bigEndian(1, 4) + "mdat"), "box \"mdat\" is cut off in its size");
    EXPECT_EQ(errorOf(ftyp + bigEndian(1, 4) + "mdat" + bigEndian(~0ULL, 8)),
              "box \"mdat\" says it has 18446744073709551615 bytes where 16 are left");
    EXPECT_EQ(errorOf(ftyp + bigEndian(1, 4) + "mdat" + bigEndian(15, 8)),
              "box \"mdat\" says it has 15 bytes where 16 are left");
    EXPECT_EQ(errorOf(ftyp + box("moov", bigEndian(0, 4) + "trak")),
              "box \"trak\" says it has 0 bytes where 8 are left");
    EXPECT_EQ(errorOf(ftyp + box("moov", bigEndian(20, 4) + "trak")),
              "box \"trak\" says it has 20 bytes where 8 are left");
    EXPECT_EQ(errorOf(bigEndian(4, 4) + std::string("\x01\x02\x03\x04", 4)),
              "a box says it has 4 bytes where 8 are left");
}

TEST(Mp4Boxes, RefusesSampleTablesThatLie) {
    const auto withTable = [](const std::string& sizes) {
        return ftyp + box("moov", box("trak", box("mdia", test::mediaHeader({}) +
                                                              box("hdlr", bigEndian(0, 8) + "vide") +
                                                              box("minf", box("stbl", box("stsz", sizes))))));
    };
    EXPECT_EQ(errorOf(withTable("")), "box \"stsz\" is too short");
    EXPECT_EQ(errorOf(withTable(bigEndian(0, 8) + bigEndian(0xFFFFFFFF, 4))),
              "box \"stsz\" counts 4294967295 samples but its table is of another length");
    EXPECT_EQ(errorOf(withTable(bigEndian(0, 4) + bigEndian(1, 4) + bigEndian(65'537, 4))),
              "there are more than 65536 frames");
    EXPECT_EQ(errorOf(withTable(bigEndian(0, 4) + bigEndian(0xFFFFFFFF, 4) + bigEndian(65'536, 4))),
              "box \"stsz\" promises more bytes than the file has");
    EXPECT_EQ(errorOf(withTable(bigEndian(0, 8) + bigEndian(1, 4) + bigEndian(0x7FFFFFFF, 4))),
              "box \"stsz\" promises more bytes than the file has");
}

TEST(Mp4Boxes, RefusesHeadersWithoutAUsableDuration) {
    EXPECT_EQ(errorOf(mp4({.timeScale = 0})), "box \"mdhd\" has no usable duration");
    EXPECT_EQ(errorOf(mp4({.duration = ~0ULL, .wideHeader = true})), "box \"mdhd\" has no usable duration");
    EXPECT_EQ(errorOf(mp4({.timeScale = 1, .duration = 86'400})), "box \"mdhd\" has no usable duration");
    EXPECT_EQ(errorOf(mp4({.timeScale = 1, .duration = 86'399})), "");
    const auto media = [](const std::string& inside) {
        return ftyp + box("moov", box("trak", box("mdia", inside)));
    };
    EXPECT_EQ(errorOf(media("")), "box \"hdlr\" is missing");
    EXPECT_EQ(errorOf(media(box("hdlr", ""))), "box \"hdlr\" is too short");
    EXPECT_EQ(errorOf(media(box("hdlr", bigEndian(0, 8) + "vide"))), "box \"mdhd\" is missing");
    EXPECT_EQ(errorOf(media(box("hdlr", bigEndian(0, 8) + "vide") + box("mdhd", ""))),
              "box \"minf\" is missing");
}

TEST(Mp4Boxes, RefusesTooManyBoxesAndATooLargeMovie) {
    std::string many = ftyp;
    for (int i = 0; i < 5000; ++i) {
        many += box("free", "");
    }
    EXPECT_EQ(errorOf(many), "more than 4096 boxes");
    std::string children;
    for (int i = 0; i < 1025; ++i) {
        children += box("free", "");
    }
    EXPECT_EQ(errorOf(ftyp + box("moov", children)), "more than 1024 boxes in one box");
    EXPECT_EQ(errorOf(ftyp + box("moov", std::string(5'000'000, '\0'))),
              "box \"moov\" is larger than 4194304 bytes");
}

// Every prefix and every single damaged byte of a sound file: an answer, never a crash.
TEST(Mp4Boxes, SurvivesDamageAnywhere) {
    const std::string sound = mp4({.frames = 2, .bytesPerFrame = 3});
    for (std::size_t i = 0; i < sound.size(); ++i) {
        EXPECT_FALSE(inspect(sound.substr(0, i)));
        for (const int value : {0, 1, 0x7F, 0xFF}) {
            std::string damaged = sound;
            damaged[i] = static_cast<char>(value);
            inspect(damaged);
        }
    }
}

}  // namespace
}  // namespace mireth::receiver
