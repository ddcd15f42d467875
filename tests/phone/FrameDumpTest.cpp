// What is written of the images that a phone's graphics make.
#include "phone/FrameDump.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <stdexcept>

#include "TemporaryFolder.hpp"
#include "support/RecordingGraphics.hpp"

namespace mireth::phone {
namespace {

constexpr Size size{4, 3};

struct FrameDumpTest : ::testing::Test {
    TemporaryFolder folder;
    std::shared_ptr<test::RecordingGraphics> graphics = std::make_shared<test::RecordingGraphics>();
    FrameDump dump{graphics, folder.path() / "frames"};

    platform::Image render(Size imageSize = size) {
        return dump.makeImageRenderer(imageSize, {})->image([](platform::GraphicsContext&) {});
    }
    std::ptrdiff_t written() const {
        return std::distance(std::filesystem::directory_iterator(folder.path() / "frames"), {});
    }
};

TEST_F(FrameDumpTest, WritesImagesOfEverySize) {
    (void)render();
    (void)render({3, 4});
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "frames" / "frame-00001.png"));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "frames" / "frame-00002.png"));
    EXPECT_EQ(written(), 2);
}

TEST_F(FrameDumpTest, APictureThatAnErrorCutShortIsNotWrittenAndItsNumberIsTheNextOnes) {
    graphics->contextsAreValid = false;
    EXPECT_TRUE(render().hasBitmap());
    EXPECT_EQ(written(), 0);
    graphics->contextsAreValid = true;
    (void)render();
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "frames" / "frame-00001.png"));
}

TEST_F(FrameDumpTest, AnImageWithoutABitmapIsNotWritten) {
    graphics->hasSurfaces = false;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(render().hasBitmap());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(written(), 0);
}

TEST_F(FrameDumpTest, ARendererThatThrowsIsNotCaught) {
    graphics->failures = 1;
    EXPECT_THROW((void)render(), std::runtime_error);
    EXPECT_EQ(written(), 0);
}

TEST_F(FrameDumpTest, AnImageWithoutActionsIsWritten) {
    EXPECT_TRUE(dump.makeImageRenderer(size, {})->image(nullptr).hasBitmap());
    EXPECT_EQ(written(), 1);
}

}  // namespace
}  // namespace mireth::phone
