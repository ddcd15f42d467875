// Values that no layer should have: drawing goes on, ends soon, and spoils nothing else.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/Canvas.hpp"

namespace mireth::platform {
namespace {

using tests::makeBox;
using tests::pixel;
using tests::text;

constexpr double infinity = std::numeric_limits<double>::infinity();
const std::vector<double> oddValues{std::numeric_limits<double>::quiet_NaN(),
                                    infinity,
                                    -infinity,
                                    -1,
                                    0,
                                    1e-300,
                                    1e-9,
                                    1e9,
                                    1e18,
                                    -1e18,
                                    1e300,
                                    std::numeric_limits<double>::max(),
                                    std::numeric_limits<double>::denorm_min()};

using Setter = std::function<void(Layer&, double)>;

struct Property {
    const char* name;
    Setter set;
};

void setTransform(Layer& layer, const AffineTransform& transform) {
    layer.transform.transform = Transform3D::fromAffine(transform);
}

const std::vector<Property> properties{
    {"bounds.x", [](Layer& l, double v) { l.geometry.bounds.x = v; }},
    {"bounds.height", [](Layer& l, double v) { l.geometry.bounds.height = v; }},
    {"bounds.size", [](Layer& l, double v) { l.geometry.bounds.width = l.geometry.bounds.height = v; }},
    {"position.x", [](Layer& l, double v) { l.geometry.position.x = v; }},
    {"anchorPoint.y", [](Layer& l, double v) { l.geometry.anchorPoint.y = v; }},
    {"zPosition", [](Layer& l, double v) { l.geometry.zPosition = v; }},
    {"contentsScale", [](Layer& l, double v) { l.geometry.contentsScale = v; }},
    {"opacity", [](Layer& l, double v) { l.appearance.opacity = v; }},
    {"cornerRadius", [](Layer& l, double v) { l.appearance.cornerRadius = v; }},
    {"borderWidth", [](Layer& l, double v) { l.appearance.borderWidth = v; }},
    {"shadowRadius", [](Layer& l, double v) { l.appearance.shadowRadius = v; }},
    {"shadowOpacity", [](Layer& l, double v) { l.appearance.shadowOpacity = v; }},
    {"shadowOffset", [](Layer& l, double v) { l.appearance.shadowOffset = {v, v}; }},
    {"shadowPath", [](Layer& l, double v) { l.appearance.shadowPath = ShadowPath{{v, v, v, v}, v}; }},
    {"shadowPath size", [](Layer& l, double v) { l.appearance.shadowPath = ShadowPath{{0, 0, v, 10}, v}; }},
    {"color", [](Layer& l, double v) { l.appearance.backgroundColor = Color{v, v, v, v}; }},
    {"contentsRect", [](Layer& l, double v) { l.content.contentsRect = {v, 0, v, 1}; }},
    {"contentsRect.width", [](Layer& l, double v) { l.content.contentsRect = {0, 0, v, 1}; }},
    {"contentsCenter", [](Layer& l, double v) { l.content.contentsCenter = {v, 0.2, v, 0.2}; }},
    {"scale", [](Layer& l, double v) { setTransform(l, AffineTransform::scale(v, v)); }},
    {"scale.x", [](Layer& l, double v) { setTransform(l, AffineTransform::scale(v, 1)); }},
    {"skew", [](Layer& l, double v) { setTransform(l, {1, v, v, 1, 0, 0}); }},
    {"translation", [](Layer& l, double v) { setTransform(l, AffineTransform::translation(v, v)); }},
    {"rotation", [](Layer& l, double v) { setTransform(l, AffineTransform::rotation(v)); }},
    {"sublayerTransform",
     [](Layer& l, double v) {
         l.transform.sublayerTransform = Transform3D::fromAffine(AffineTransform::scale(v, 1));
     }},
};

/// A layer that uses every piece, with a sublayer.
std::shared_ptr<Layer> makeRichLayer() {
    auto layer = makeBox({5, 5, 20, 20}, tests::red);
    layer->appearance.cornerRadius = 4;
    layer->appearance.borderWidth = 1;
    layer->appearance.borderColor = tests::colorOf(tests::blue);
    layer->appearance.shadowOpacity = 0.5;
    layer->content.contents = tests::fourColors(3);
    layer->addSublayer(makeBox({2, 2, 8, 8}, tests::white));
    return layer;
}

/// Draws the layer below a green spot at the top left that must show whatever the layer is like.
void expectHarmless(const std::shared_ptr<Layer>& odd, const std::string& what) {
    const auto root = makeBox({0, 0, 40, 40}, tests::black);
    const auto spot = makeBox({0, 0, 3, 3}, tests::green);
    spot->geometry.zPosition = infinity;
    root->addSublayer(odd);
    root->addSublayer(spot);
    const auto begin = std::chrono::steady_clock::now();
    const Image image =
        CairoGraphics().makeImageRenderer({40, 40}, {1.0, true})->image([&](GraphicsContext& context) {
            root->render(context);
            EXPECT_TRUE(context.isValid()) << what;
        });
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    ASSERT_TRUE(image.hasBitmap()) << what;
    EXPECT_EQ(pixel(image, 1, 1), text(tests::green)) << what;
    EXPECT_LT(took.count(), 2.0) << what;
}

/// What decides how a layer is drawn.
const std::vector<std::function<void(Layer&)>> modes{
    [](Layer&) {},
    [](Layer& l) { l.appearance.opacity = 0.5; },
    [](Layer& l) { l.appearance.masksToBounds = true; },
    [](Layer& l) { l.appearance.mask = makeRichLayer(); },
    [](Layer& l) { l.rendering.isGeometryFlipped = true; },
    [](Layer& l) { l.appearance.contentsGravity = ContentsGravity::resizeAspectFill; },
    [](Layer& l) { l.filters.magnificationFilter = LayerFilter::nearest; },
};

TEST(LayerRenderingDegenerate, OddValuesOfAnyPropertyAreHarmless) {
    for (const Property& property : properties) {
        for (const double value : oddValues) {
            for (std::size_t mode = 0; mode < modes.size(); ++mode) {
                const auto layer = makeRichLayer();
                modes[mode](*layer);
                property.set(*layer, value);
                expectHarmless(layer, std::string(property.name) + " " + std::to_string(value) + " mode " +
                                          std::to_string(mode));
            }
        }
    }
}

TEST(LayerRenderingDegenerate, OddValuesOfAMaskAreHarmless) {
    for (const Property& property : properties) {
        for (const double value : oddValues) {
            const auto layer = makeRichLayer();
            const auto mask = makeRichLayer();
            property.set(*mask, value);
            layer->appearance.mask = mask;
            expectHarmless(layer, std::string("mask ") + property.name + " " + std::to_string(value));
        }
    }
}

TEST(LayerRenderingDegenerate, OddValuesOfTheRootAreHarmless) {
    for (const Property& property : properties) {
        for (const double value : oddValues) {
            const auto root = makeRichLayer();
            property.set(*root, value);
            const Image image =
                CairoGraphics().makeImageRenderer({40, 40}, {})->image([&](GraphicsContext& context) {
                    root->render(context);
                });
            EXPECT_TRUE(image.hasBitmap()) << property.name << " " << value;
        }
    }
}

TEST(LayerRenderingDegenerate, HugeRectangleStillCoversTheScreen) {
    const auto root = makeBox({0, 0, 40, 40}, tests::black);
    root->addSublayer(makeBox({-1e12, -1e12, 2e12, 2e12}, tests::red));
    const Image image = CairoGraphics().makeImageRenderer({40, 40}, {})->image([&](GraphicsContext& context) {
        root->render(context);
    });
    EXPECT_EQ(pixel(image, 0, 0), text(tests::red));
    EXPECT_EQ(pixel(image, 39, 39), text(tests::red));
}

TEST(LayerRenderingDegenerate, LayerInsideItselfEnds) {
    const auto layer = makeRichLayer();
    layer->addSublayer(layer);
    layer->addSublayer(layer);
    const auto begin = std::chrono::steady_clock::now();
    const Image image = CairoGraphics().makeImageRenderer({40, 40}, {})->image([&](GraphicsContext& context) {
        layer->render(context);
    });
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    EXPECT_TRUE(image.hasBitmap());
    EXPECT_LT(took.count(), 20.0);
    // The circle owns itself.
    layer->removeAllSublayers();
}

TEST(LayerRenderingDegenerate, MaskInsideItselfEnds) {
    const auto layer = makeRichLayer();
    layer->appearance.mask = layer;
    layer->appearance.opacity = 0.9;
    expectHarmless(layer, "mask circle");
    layer->appearance.mask = nullptr;
}

TEST(LayerRenderingDegenerate, DeeplyNestedFadesEnd) {
    auto layer = makeRichLayer();
    for (int depth = 0; depth < 3000; ++depth) {
        auto above = makeRichLayer();
        above->appearance.opacity = 0.999;
        above->setFrame({0, 0, 40, 40});
        above->addSublayer(layer);
        layer = std::move(above);
    }
    expectHarmless(layer, "deep");
}

}  // namespace
}  // namespace mireth::platform
