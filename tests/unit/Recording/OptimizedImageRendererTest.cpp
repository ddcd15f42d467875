// The renderer of frames.
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"

#include <gtest/gtest.h>

#include <type_traits>

#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/RecordingGraphics.hpp"

namespace mireth {
namespace {

using platform::Graphics;
using platform::GraphicsContext;
using platform::ImageRendererFormat;

TEST(OptimizedImageRenderer, IsOfScaleOneOpaqueAndInTheStandardRange) {
    test::RecordingGraphics graphics;
    const OptimizedImageRenderer renderer(graphics, Size{390, 844});
    EXPECT_EQ(graphics.renderers, (test::DrawLog{"390x844 scale 1 opaque standard"}));
    EXPECT_EQ(renderer.size(), (Size{390, 844}));
}

TEST(OptimizedImageRenderer, BoundsAreShownFromTheirOrigin) {
    test::RecordingGraphics graphics;
    OptimizedImageRenderer renderer(graphics, Rect{10, 20, 30, 40});
    (void)renderer.image([](GraphicsContext& context) { context.clearRect({10, 20, 1, 1}); });
    EXPECT_EQ(graphics.renderers, (test::DrawLog{"30x40 scale 1 opaque standard"}));
    EXPECT_EQ(graphics.log, (test::DrawLog{"concatenate 1 0 0 1 -10 -20", "clear 10 20 1 1"}));
}

TEST(OptimizedImageRenderer, OtherFormatsCannotBeAskedFor) {
    static_assert(!std::is_constructible_v<OptimizedImageRenderer, Graphics&, Size, ImageRendererFormat>);
    static_assert(!std::is_constructible_v<OptimizedImageRenderer, Graphics&, Rect, ImageRendererFormat>);
    static_assert(!std::is_default_constructible_v<OptimizedImageRenderer>);
}

TEST(OptimizedImageRenderer, WithoutARendererThereIsNoBitmap) {
    test::RecordingGraphics graphics;
    graphics.hasRenderers = false;
    OptimizedImageRenderer renderer(graphics, Size{1, 1});
    EXPECT_FALSE(renderer.image([](GraphicsContext&) {}).hasBitmap());
}

TEST(OptimizedImageRenderer, OnePixelAPointAndBlackWhereNothingIsDrawn) {
    platform::CairoGraphics graphics;
    OptimizedImageRenderer renderer(graphics, Size{3, 2});
    const auto image = renderer.image([](GraphicsContext&) {});
    ASSERT_EQ(image.pixels().size(), 6U);
    for (const std::uint32_t pixel : image.pixels()) {
        EXPECT_EQ(pixel, 0xFF000000U);
    }
}

}  // namespace
}  // namespace mireth
