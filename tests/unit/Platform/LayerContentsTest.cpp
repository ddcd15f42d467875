// How a layer's picture fills its bounds.
#include <gtest/gtest.h>

#include "MirethVex/Platform/Layer.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/Canvas.hpp"

namespace mireth::platform {
namespace {

using tests::makeBox;
using tests::pixel;
using tests::text;

Image draw(const Layer& layer, double width = 20, double height = 20) {
    return CairoGraphics().makeImageRenderer({width, height}, {})->image([&](GraphicsContext& context) {
        layer.render(context);
    });
}

/// A layer of `width` x `height` with the four colours, each `block` pixels wide, drawn without smoothing.
std::shared_ptr<Layer> makePicture(double width, double height, std::size_t block) {
    auto layer = makeBox({0, 0, width, height}, 0);
    layer->content.contents = tests::fourColors(block);
    layer->filters.magnificationFilter = LayerFilter::nearest;
    layer->filters.minificationFilter = LayerFilter::nearest;
    return layer;
}

/// The smallest rectangle around everything that was drawn.
Rect drawnArea(const Image& image) {
    std::size_t left = image.pixelWidth();
    std::size_t top = image.pixelHeight();
    std::size_t right = 0;
    std::size_t bottom = 0;
    for (std::size_t y = 0; y < image.pixelHeight(); ++y) {
        for (std::size_t x = 0; x < image.pixelWidth(); ++x) {
            if (image.pixels()[y * image.pixelWidth() + x] != 0) {
                left = std::min(left, x);
                top = std::min(top, y);
                right = std::max(right, x + 1);
                bottom = std::max(bottom, y + 1);
            }
        }
    }
    return {static_cast<double>(left), static_cast<double>(top), static_cast<double>(right - left),
            static_cast<double>(bottom - top)};
}

struct GravityCase {
    const char* name;
    ContentsGravity gravity;
    Rect area;
};

class Gravity : public testing::TestWithParam<GravityCase> {};

TEST_P(Gravity, PlacesThePicture) {
    const auto layer = makePicture(20, 12, 2);
    layer->appearance.contentsGravity = GetParam().gravity;
    layer->appearance.masksToBounds = true;
    const Image image = draw(*layer);
    EXPECT_EQ(drawnArea(image), GetParam().area);
}

INSTANTIATE_TEST_SUITE_P(
    LayerContents, Gravity,
    testing::Values(GravityCase{"resize", ContentsGravity::resize, {0, 0, 20, 12}},
                    GravityCase{"resizeAspect", ContentsGravity::resizeAspect, {4, 0, 12, 12}},
                    GravityCase{"resizeAspectFill", ContentsGravity::resizeAspectFill, {0, 0, 20, 12}},
                    GravityCase{"center", ContentsGravity::center, {8, 4, 4, 4}},
                    GravityCase{"top", ContentsGravity::top, {8, 0, 4, 4}},
                    GravityCase{"bottom", ContentsGravity::bottom, {8, 8, 4, 4}},
                    GravityCase{"left", ContentsGravity::left, {0, 4, 4, 4}},
                    GravityCase{"right", ContentsGravity::right, {16, 4, 4, 4}},
                    GravityCase{"topLeft", ContentsGravity::topLeft, {0, 0, 4, 4}},
                    GravityCase{"topRight", ContentsGravity::topRight, {16, 0, 4, 4}},
                    GravityCase{"bottomLeft", ContentsGravity::bottomLeft, {0, 8, 4, 4}},
                    GravityCase{"bottomRight", ContentsGravity::bottomRight, {16, 8, 4, 4}}),
    [](const auto& gravity) { return std::string(gravity.param.name); });

TEST(LayerContents, ArePlacedUpright) {
    const Image image = draw(*makePicture(20, 20, 2));
    EXPECT_EQ(pixel(image, 1, 1), text(tests::red));
    EXPECT_EQ(pixel(image, 18, 1), text(tests::green));
    EXPECT_EQ(pixel(image, 1, 18), text(tests::blue));
    EXPECT_EQ(pixel(image, 18, 18), text(tests::white));
}

TEST(LayerContents, AspectFillOverflowsEvenlyUnlessMasked) {
    const auto root = makeBox({0, 0, 20, 20}, 0);
    const auto picture = makePicture(20, 10, 2);
    picture->setFrame({0, 5, 20, 10});
    picture->appearance.contentsGravity = ContentsGravity::resizeAspectFill;
    root->addSublayer(picture);
    EXPECT_EQ(drawnArea(draw(*root)), (Rect{0, 0, 20, 20}));
}

TEST(LayerContents, ScaleIsPixelsPerPoint) {
    const auto layer = makePicture(20, 20, 4);
    layer->appearance.contentsGravity = ContentsGravity::topLeft;
    layer->geometry.contentsScale = 2;
    EXPECT_EQ(drawnArea(draw(*layer)), (Rect{0, 0, 4, 4}));
    layer->geometry.contentsScale = 0;
    EXPECT_EQ(drawnArea(draw(*layer)), (Rect{0, 0, 8, 8}));
}

TEST(LayerContents, OnlyTheContentsRectIsDrawn) {
    const auto layer = makePicture(20, 20, 2);
    layer->content.contentsRect = {0.5, 0, 0.5, 0.5};
    layer->filters.magnificationFilter = LayerFilter::linear;
    const Image image = draw(*layer);
    for (const std::size_t at : {std::size_t{0}, std::size_t{10}, std::size_t{19}}) {
        EXPECT_EQ(pixel(image, at, at), text(tests::green));
    }
}

TEST(LayerContents, ContentsRectBeyondThePictureDrawsWhatThereIsOfIt) {
    const auto layer = makePicture(20, 20, 2);
    layer->content.contentsRect = {-0.5, 0, 2, 1};
    EXPECT_EQ(drawnArea(draw(*layer)), (Rect{5, 0, 10, 20}));
}

TEST(LayerContents, MagnificationFilterDecidesWhetherEdgesBlur) {
    const auto layer = makePicture(20, 20, 1);
    EXPECT_EQ(pixel(draw(*layer), 9, 0), text(tests::red));
    layer->filters.magnificationFilter = LayerFilter::linear;
    const Image image = draw(*layer);
    EXPECT_NE(pixel(image, 9, 0), text(tests::red));
    EXPECT_NE(pixel(image, 9, 0), text(tests::green));
    EXPECT_EQ(pixel(image, 0, 0), text(tests::red));
}

/// 9 x 9 pixels: a red frame 3 pixels wide around a green middle.
Image framed() {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 9; ++x) {
            const bool middle = x >= 3 && x < 6 && y >= 3 && y < 6;
            pixels.push_back(middle ? tests::green : tests::red);
        }
    }
    return {9, 9, std::move(pixels)};
}

TEST(LayerContents, OnlyTheCenterStretches) {
    const auto layer = makeBox({0, 0, 20, 20}, 0);
    layer->content.contents = framed();
    layer->content.contentsCenter = {1.0 / 3, 1.0 / 3, 1.0 / 3, 1.0 / 3};
    const Image image = draw(*layer);
    EXPECT_EQ(pixel(image, 2, 10), text(tests::red));
    EXPECT_EQ(pixel(image, 3, 10), text(tests::green));
    EXPECT_EQ(pixel(image, 16, 10), text(tests::green));
    EXPECT_EQ(pixel(image, 17, 10), text(tests::red));
    EXPECT_EQ(pixel(image, 10, 2), text(tests::red));
    EXPECT_EQ(pixel(image, 10, 3), text(tests::green));
    EXPECT_EQ(drawnArea(image), (Rect{0, 0, 20, 20}));
}

TEST(LayerContents, EndsShrinkWhenThereIsNoRoomForTheCenter) {
    const auto layer = makeBox({0, 0, 4, 20}, 0);
    layer->content.contents = framed();
    layer->content.contentsCenter = {1.0 / 3, 1.0 / 3, 1.0 / 3, 1.0 / 3};
    const Image image = draw(*layer);
    EXPECT_EQ(pixel(image, 1, 10), text(tests::red));
    EXPECT_EQ(pixel(image, 3, 10), text(tests::red));
    EXPECT_EQ(drawnArea(image), (Rect{0, 0, 4, 20}));
}

TEST(LayerContents, CenterWithoutWidthStretchesThePixelAtTheCut) {
    const auto layer = makeBox({0, 0, 20, 20}, 0);
    layer->content.contents = framed();
    layer->content.contentsCenter = {0.5, 0.5, 0, 0};
    const Image image = draw(*layer);
    EXPECT_EQ(pixel(image, 10, 10), text(tests::green));
    EXPECT_EQ(drawnArea(image), (Rect{0, 0, 20, 20}));
}

}  // namespace
}  // namespace mireth::platform
