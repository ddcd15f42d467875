// Blocks that are drawn without a path look as Cairo draws them, to the pixel.
#include "platforms/linux/media/OpaqueBlocks.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/CairoPath.hpp"

namespace mireth::platform {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr int side = 40;
constexpr Color color{0.2, 0.5, 0.9, 1};

/// A surface with something on it, and both ways to draw a block there.
class Canvas {
  public:
    explicit Canvas(cairo_format_t format, std::shared_ptr<BlockCoverages> coverages)
        : surface_(cairo_image_surface_create(format, side, side)),
          cairo_(cairo_create(surface_.get())),
          blocks_(surface_.get(), std::move(coverages)) {
        for (int row = 0; row < side; ++row) {
            cairo_set_source_rgba(cairo_.get(), row % 3 / 3.0, row % 5 / 5.0, row % 7 / 7.0, row % 4 / 3.0);
            cairo_rectangle(cairo_.get(), 0, row, side, 1);
            cairo_fill(cairo_.get());
        }
    }

    void scale(double factor) { cairo_scale(cairo_.get(), factor, factor); }
    void turn(double angle) { cairo_rotate(cairo_.get(), angle); }
    void clip(const DeviceRect& clip) {
        clip_ = clip;
        cairo_rectangle(cairo_.get(), clip.left, clip.top, clip.width(), clip.height());
        cairo_clip(cairo_.get());
    }

    void drawByCairo(const OpaqueBlocks::Block& block) {
        setColor(cairo_.get(), block.color);
        if (block.border > 0) {
            fillRing(cairo_.get(), block.rect, block.radii, block.border);
        } else {
            addRoundedRect(cairo_.get(), block.rect, block.radii);
            cairo_fill(cairo_.get());
        }
    }

    bool draw(const OpaqueBlocks::Block& block) {
        cairo_matrix_t matrix;
        cairo_get_matrix(cairo_.get(), &matrix);
        return blocks_.draw(block, matrix, clip_);
    }

    /// Without the byte that an opaque surface has no use for.
    Pixels pixels() const {
        cairo_surface_flush(surface_.get());
        const auto unused =
            cairo_image_surface_get_format(surface_.get()) == CAIRO_FORMAT_RGB24 ? 0xFF000000U : 0U;
        Pixels pixels(side * side);
        for (int row = 0; row < side; ++row) {
            const auto* const first =
                reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface_.get()) +
                                                       row * cairo_image_surface_get_stride(surface_.get()));
            for (int x = 0; x < side; ++x) {
                pixels[static_cast<std::size_t>(row * side + x)] = first[x] | unused;
            }
        }
        return pixels;
    }

  private:
    const CairoSurface surface_;
    const CairoHandle cairo_;
    OpaqueBlocks blocks_;
    DeviceRect clip_ = blocks_.area();
};

OpaqueBlocks::Block block(const Rect& rect, double radius, double border = 0) {
    return {rect, {radius, radius, radius, radius}, border, color};
}

class OpaqueBlocksTest : public ::testing::TestWithParam<cairo_format_t> {
  protected:
    Canvas canvas() const { return Canvas(GetParam(), coverages_); }

    /// Expects that the block can be drawn directly, once it was met, and then looks as Cairo draws it.
    template <class Prepare>
    void expectAsCairo(const OpaqueBlocks::Block& wanted, Prepare prepare) const {
        Canvas direct = canvas();
        prepare(direct);
        (void)direct.draw(wanted);
        Canvas again = canvas();
        prepare(again);
        ASSERT_TRUE(again.draw(wanted));
        Canvas cairo = canvas();
        prepare(cairo);
        cairo.drawByCairo(wanted);
        ASSERT_EQ(again.pixels(), cairo.pixels())
            << wanted.rect.x << ' ' << wanted.rect.y << ' ' << wanted.rect.width << ' ' << wanted.rect.height
            << " radius " << wanted.radii[0] << " border " << wanted.border;
    }
    void expectAsCairo(const OpaqueBlocks::Block& wanted) const {
        expectAsCairo(wanted, [](Canvas& /*canvas*/) {});
    }

    const std::shared_ptr<BlockCoverages> coverages_ = std::make_shared<BlockCoverages>();
};

TEST_P(OpaqueBlocksTest, BlocksLookAsCairoDrawsThem) {
    for (const double x : {3.0, 3.25, 3.5, 3.99609375}) {
        for (const double y : {2.0, 2.0625, 2.75}) {
            for (const double width : {30.0, 30.5, 27.91796875}) {
                for (const double height : {31.0, 30.25, 17.984375}) {
                    for (const double radius : {0.0, 0.5, 4.0, 6.5, 8.0}) {
                        expectAsCairo(block({x, y, width, height}, radius));
                    }
                }
            }
        }
    }
}

TEST_P(OpaqueBlocksTest, BordersLookAsCairoDrawsThem) {
    for (const double offset : {3.0, 3.5, 3.0625}) {
        for (const double length : {30.0, 30.25}) {
            for (const double radius : {0.0, 1.0, 6.0, 7.5}) {
                for (const double border : {0.5, 1.0, 2.0, 2.5, 7.0}) {
                    expectAsCairo(block({offset, offset, length, length}, radius, border));
                }
            }
        }
    }
}

TEST_P(OpaqueBlocksTest, LargerScalesAndPartsOutsideLookAsCairoDrawsThem) {
    for (const double scale : {1.5, 2.0, 3.0}) {
        for (const double x : {-3.0, 1.0, 4.5}) {
            expectAsCairo(block({x, -2, 20, 18}, 2.5), [scale](Canvas& canvas) { canvas.scale(scale); });
        }
    }
}

TEST_P(OpaqueBlocksTest, TheClipCutsCornersAndSides) {
    for (const DeviceRect& clip : {DeviceRect{5, 5, 20, 20}, DeviceRect{2, 3, 7, 33},
                                   DeviceRect{0, 30, 40, 33}, DeviceRect{31, 0, 40, 6}}) {
        expectAsCairo(block({3, 2.5, 30, 30}, 6), [&clip](Canvas& canvas) { canvas.clip(clip); });
    }
}

TEST_P(OpaqueBlocksTest, SmallBlocksWithoutRoundCornersLookAsCairoDrawsThem) {
    for (const double width : {1.0, 2.0, 3.0, 4.0}) {
        expectAsCairo(block({3, 2, width, 30}, 0));
        expectAsCairo(block({3, 2, 30, width}, 0));
    }
    expectAsCairo(block({3, 2, 16, 30}, 100));
}

TEST_P(OpaqueBlocksTest, AShapeMetForTheFirstTimeIsLeftToCairo) {
    Canvas canvas = this->canvas();
    const Pixels before = canvas.pixels();
    EXPECT_FALSE(canvas.draw(block({3, 2, 30, 20}, 4)));
    EXPECT_EQ(canvas.pixels(), before);
    EXPECT_TRUE(canvas.draw(block({9, 7, 12, 18}, 4)));
    EXPECT_NE(canvas.pixels(), before);
}

TEST_P(OpaqueBlocksTest, WhatNeedsAPathIsLeftToCairo) {
    const OpaqueBlocks::Block plain = block({3, 2, 30, 20}, 4);
    OpaqueBlocks::Block translucent = plain;
    translucent.color.alpha = 0.99;
    OpaqueBlocks::Block uneven = plain;
    uneven.radii[2] = 0;
    for (const auto& left : {translucent, uneven, block({3.001, 2, 30, 20}, 4), block({3, 2, 30, 7}, 100),
                             block({3, 2, 30, 30}, 0, 65), block({1e9, 0, 30, 20}, 0)}) {
        Canvas canvas = this->canvas();
        const Pixels before = canvas.pixels();
        EXPECT_FALSE(canvas.draw(left));
        EXPECT_FALSE(canvas.draw(left));
        EXPECT_EQ(canvas.pixels(), before);
    }
    Canvas turned = canvas();
    turned.turn(0.1);
    EXPECT_FALSE(turned.draw(plain));
    EXPECT_FALSE(turned.draw(plain));
}

TEST_P(OpaqueBlocksTest, ManyShapesDoNotMakeItForgetHowToDraw) {
    Canvas canvas = this->canvas();
    for (int n = 0; n < 3000; ++n) {
        (void)canvas.draw(block({3, 2, 30, 30}, 1 + n / 1000.0));
    }
    expectAsCairo(block({3, 2, 30, 30}, 4));
}

INSTANTIATE_TEST_SUITE_P(Formats, OpaqueBlocksTest, testing::Values(CAIRO_FORMAT_ARGB32, CAIRO_FORMAT_RGB24),
                         [](const auto& format) {
                             return format.param == CAIRO_FORMAT_ARGB32 ? "WithAlpha" : "Opaque";
                         });

}  // namespace
}  // namespace mireth::platform
