// Pictures: read faithfully, refused when they are not what they claim to be.
#include "phone/PngFile.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "TemporaryFolder.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {
namespace {

using ::testing::HasSubstr;

class PngFileTest : public ::testing::Test {
  protected:
    std::string complaintAbout(const std::filesystem::path& file) const {
        try {
            (void)readPng(file, 1);
        } catch (const ScenarioError& error) {
            return error.what();
        }
        return "";
    }
    std::filesystem::path written(const std::string& bytes) const {
        const auto file = folder.path() / "picture.png";
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }
    static std::string bytesOf(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    TemporaryFolder folder;
};

TEST_F(PngFileTest, WhatIsWrittenIsReadBack) {
    const platform::Image image(2, 1, {0xFF112233U, 0x80400020U}, 3);
    const auto file = folder.path() / "a.png";
    EXPECT_EQ(writePng(image, file), std::nullopt);
    const platform::Image read = readPng(file, 3);
    ASSERT_EQ(read.pixelWidth(), 2U);
    EXPECT_EQ(read.pixels()[0], 0xFF112233U);
    EXPECT_EQ(read.pixels()[1], 0x80400020U);
    EXPECT_EQ(read.scale(), 3);
}

TEST_F(PngFileTest, AnImageWithoutABitmapIsNotWritten) {
    EXPECT_NE(writePng(platform::Image(), folder.path() / "a.png"), std::nullopt);
}

TEST_F(PngFileTest, RefusesOtherFiles) {
    EXPECT_THAT(complaintAbout(written("GIF89a")), HasSubstr("is not a PNG file"));
    EXPECT_THAT(complaintAbout(written("")), HasSubstr("is not a PNG file"));
}

TEST_F(PngFileTest, RefusesADamagedFile) {
    const auto good = folder.path() / "good.png";
    ASSERT_EQ(writePng(platform::Image::filled(64, 64, 0xFF000000U), good), std::nullopt);
    const std::string bytes = bytesOf(good);
    EXPECT_THAT(complaintAbout(written(bytes.substr(0, bytes.size() / 2))),
                HasSubstr("is a damaged PNG file"));
}

TEST_F(PngFileTest, RefusesSidesThatWouldUnpackToGigabytes) {
    const auto good = folder.path() / "good.png";
    ASSERT_EQ(writePng(platform::Image::filled(1, 1, 0xFF000000U), good), std::nullopt);
    std::string bytes = bytesOf(good);
    bytes.replace(16, 4, std::string("\x00\x01\x00\x00", 4));
    EXPECT_THAT(complaintAbout(written(bytes)), HasSubstr("must have sides of 1 to 4096 pixels"));
}

TEST_F(PngFileTest, RefusesALink) {
    const auto good = folder.path() / "good.png";
    ASSERT_EQ(writePng(platform::Image::filled(1, 1, 0xFF000000U), good), std::nullopt);
    std::filesystem::create_symlink("good.png", folder.path() / "link.png");
    EXPECT_THAT(complaintAbout(folder.path() / "link.png"), HasSubstr("it is a symbolic link"));
}

}  // namespace
}  // namespace mireth::phone
