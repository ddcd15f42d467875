// Frames on their way into pixel buffers: the steps, the failures, and what is drawn.
#include "PrivateSide/Recording/ImageConverter.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "PrivateSide/Configuration/RecordingError.hpp"
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/RecordingGraphics.hpp"
#include "tests/support/ScriptedAssetWriter.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::PixelBuffer;

class ImageConverterTest : public ::testing::Test {
  protected:
    ImageConverter converter(PixelBufferOperations operations = {}) {
        return {frame_, pool_, graphics_, std::move(operations)};
    }

    static std::string failureOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const RecordingError& error) {
            return error.what();
        }
        return "none";
    }
    std::string failureOfConversion(PixelBufferOperations operations = {}) {
        auto subject = converter(std::move(operations));
        return failureOf([&subject] { (void)subject.convertToPixelBuffer(); });
    }

    Frame frame_{Image::filled(375, 812, 0xFFFF0000U),
                 ScalingMetadataCalculator::calculateScalingMetadata({375, 812}, {250, 500})};
    std::shared_ptr<test::WriterScript> script_ = std::make_shared<test::WriterScript>();
    std::shared_ptr<test::ScriptedPool> pool_ = std::make_shared<test::ScriptedPool>(script_);
    std::shared_ptr<test::RecordingGraphics> graphics_ = std::make_shared<test::RecordingGraphics>();
};

TEST_F(ImageConverterTest, WholeBufferIsClearedThenTheImageDrawnInItsPlace) {
    auto subject = converter();
    const auto buffer = subject.convertToPixelBuffer();
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->baseAddress(), nullptr) << "unlocked again";
    ASSERT_EQ(graphics_->bitmaps.size(), 1U);
    EXPECT_EQ(graphics_->bitmaps[0].width, 250U);
    EXPECT_EQ(graphics_->bitmaps[0].height, 500U);
    EXPECT_EQ(graphics_->bitmaps[0].bytesPerRow, 1016U);
    EXPECT_EQ(graphics_->bitmaps[0].bytes.size(), 1016U * 500U);
    EXPECT_EQ(graphics_->log,
              (test::DrawLog{"clear 0 0 250 500", "image 375 812 from 0 0 1 1 to 9.54433 0 230.911 500"}));
}

TEST_F(ImageConverterTest, StepsAreTakenInOrder) {
    std::vector<std::string> steps;
    PixelBufferOperations operations;
    operations.lockBaseAddress = [&steps](PixelBuffer& buffer) {
        steps.emplace_back("lock");
        buffer.lockBaseAddress();
    };
    operations.bytesPerRow = [&steps](PixelBuffer& buffer) {
        steps.emplace_back("bytesPerRow");
        return buffer.bytesPerRow();
    };
    operations.baseAddress = [&steps](PixelBuffer& buffer) {
        steps.emplace_back("baseAddress");
        return buffer.baseAddress();
    };
    operations.unlockBaseAddress = [&steps](PixelBuffer& buffer) {
        steps.emplace_back("unlock");
        buffer.unlockBaseAddress();
    };
    graphics_->onBitmapContextEnd = [&steps] { steps.emplace_back("context ends"); };
    const std::vector<std::string> order{"lock", "bytesPerRow", "baseAddress", "context ends", "unlock"};
    EXPECT_EQ(failureOfConversion(operations), "none");
    EXPECT_EQ(steps, order) << "the context writes to the memory until it is gone";
    steps.clear();
    frame_.image = Image();
    EXPECT_NE(failureOfConversion(operations), "none");
    EXPECT_EQ(steps, order) << "also when drawing fails";
}

TEST_F(ImageConverterTest, PoolThatFails) {
    script_->poolStatus = -6662;
    EXPECT_EQ(failureOfConversion(), "CVPixelBufferPoolCreatePixelBuffer() failed");
    script_->poolHasBuffers = false;
    EXPECT_EQ(failureOfConversion(), "CVPixelBufferPoolCreatePixelBuffer() failed")
        << "the status comes first";
}

TEST_F(ImageConverterTest, PoolWithoutABuffer) {
    script_->poolHasBuffers = false;
    EXPECT_EQ(failureOfConversion(), "PixelBuffer is nil during preparation");
}

TEST_F(ImageConverterTest, NoContextOnTheBuffer) {
    graphics_->hasBitmapContexts = false;
    EXPECT_EQ(failureOfConversion(), "Context is nil during preparation");
}

TEST_F(ImageConverterTest, NoMemoryBehindTheBuffer) {
    PixelBufferOperations operations;
    operations.baseAddress = [](PixelBuffer&) { return nullptr; };
    EXPECT_EQ(failureOfConversion(operations), "Context is nil during preparation");
    EXPECT_TRUE(graphics_->bitmaps.empty());
}

TEST_F(ImageConverterTest, ImageWithoutBitmap) {
    frame_.image = Image();
    EXPECT_EQ(failureOfConversion(), "Could not retrieve cgImage from image");
}

TEST_F(ImageConverterTest, FailureUnlocksTheBuffer) {
    int locks = 0;
    PixelBufferOperations operations;
    operations.lockBaseAddress = [&locks](PixelBuffer&) { ++locks; };
    operations.unlockBaseAddress = [&locks](PixelBuffer&) { --locks; };
    graphics_->hasBitmapContexts = false;
    (void)failureOfConversion(operations);
    EXPECT_EQ(locks, 0);
}

TEST_F(ImageConverterTest, StepsOutOfOrderSayWhatIsMissing) {
    auto subject = converter();
    EXPECT_EQ(failureOf([&] { subject.prepareContext(); }), "PixelBuffer is nil while creating context");
    EXPECT_EQ(failureOf([&] { subject.drawImage({}); }), "PixelBuffer is nil while drawing image");
    EXPECT_EQ(failureOf([&] { (void)subject.takePixelBuffer(); }), "PixelBuffer is nil");
    subject.preparePixelBuffer();
    EXPECT_EQ(failureOf([&] { subject.drawImage({}); }), "Context is nil");
}

/// The word of one pixel of a converted buffer.
std::uint32_t pixelAt(PixelBuffer& buffer, std::size_t x, std::size_t y) {
    buffer.lockBaseAddress();
    std::uint32_t word = 0;
    std::memcpy(&word, buffer.baseAddress() + y * buffer.bytesPerRow() + x * 4, sizeof word);
    buffer.unlockBaseAddress();
    return word;
}

TEST_F(ImageConverterTest, DrawnFrameIsUprightWithTransparentBlackMargins) {
    constexpr std::uint32_t red = 0xFFFF0000U;
    constexpr std::uint32_t blue = 0xFF0000FFU;
    std::vector<std::uint32_t> pixels(375 * 812, blue);
    std::fill_n(pixels.begin(), 375 * 406, red);
    frame_.image = Image(375, 812, std::move(pixels));
    ImageConverter subject(frame_, pool_, std::make_shared<platform::CairoGraphics>());
    const auto buffer = subject.convertToPixelBuffer();
    EXPECT_EQ(pixelAt(*buffer, 125, 10), red);
    EXPECT_EQ(pixelAt(*buffer, 125, 0), red);
    EXPECT_EQ(pixelAt(*buffer, 125, 490), blue);
    EXPECT_EQ(pixelAt(*buffer, 125, 499), blue);
    for (const std::size_t y : {0U, 250U, 499U}) {
        EXPECT_EQ(pixelAt(*buffer, 0, y), 0U);
        EXPECT_EQ(pixelAt(*buffer, 8, y), 0U);
        EXPECT_EQ(pixelAt(*buffer, 241, y), 0U);
        EXPECT_EQ(pixelAt(*buffer, 249, y), 0U);
    }
}

}  // namespace
}  // namespace mireth
