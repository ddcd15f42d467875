// Two states of a layer tree: what counts as a change, what does not, and by how much.
#include "PrivateSide/Extensions/CALayerExtensions/LayerComparison.hpp"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Layer;
using platform::View;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A layer in which every value that is compared is set.
Layer sampleLayer() {
    static const auto mask = std::make_shared<const Layer>();
    Layer layer;
    layer.setFrame({10, 20, 64, 32});
    layer.appearance.borderColor = Color{0.1, 0.2, 0.3, 0.4};
    layer.appearance.backgroundColor = Color{0.5, 0.6, 0.7, 0.8};
    layer.appearance.mask = mask;
    return layer;
}

/// Root, one child, and one grandchild: the sample layer.
std::shared_ptr<View> sampleTree() {
    const auto root = std::make_shared<View>();
    const auto child = std::make_shared<View>();
    const auto grandchild = std::make_shared<View>();
    grandchild->mutableLayer() = sampleLayer();
    root->addSubview(child);
    child->addSubview(grandchild);
    return root;
}

bool isSame(const View& before, const View& after) {
    return isEqual(LayerSnapshot::capture(before), LayerSnapshot::capture(after));
}

/// The comparisons of one layer that find a difference, by their initials, in their order.
std::string changedBy(const LayerState& before, const LayerState& after) {
    std::string changed;
    changed += compareLayerCount(before, after) ? "" : "N";
    changed += compareContent(before, after) ? "" : "C";
    changed += compareAppearance(before, after) ? "" : "A";
    changed += compareRenderingBehavior(before, after) ? "" : "R";
    changed += compareGeometry(before, after) ? "" : "G";
    changed += compareTransform(before, after) ? "" : "T";
    return changed;
}

struct Change {
    std::string name;
    std::function<void(Layer&)> apply;
    /// Which comparisons find it.
    std::string foundBy;
};

std::ostream& operator<<(std::ostream& out, const Change& change) {
    return out << change.name;
}

class OfAProperty : public testing::TestWithParam<Change> {};

TEST_P(OfAProperty, IsFoundByItsComparisonAloneAndAnywhereInTheTree) {
    Layer changed = sampleLayer();
    GetParam().apply(changed);
    const LayerState before(sampleLayer());
    const LayerState after(changed);
    EXPECT_EQ(changedBy(before, after), GetParam().foundBy);
    EXPECT_EQ(changedBy(after, before), GetParam().foundBy) << "the other way round";
    EXPECT_EQ(changedBy(after, LayerState(changed)), "") << "equal to itself";

    const auto treeBefore = sampleTree();
    const auto treeAfter = sampleTree();
    GetParam().apply(treeAfter->subviews()[0]->subviews()[0]->mutableLayer());
    EXPECT_EQ(isSame(*treeBefore, *treeAfter), GetParam().foundBy.empty());
}

std::string nameOf(const testing::TestParamInfo<Change>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    AChange, OfAProperty,
    testing::Values(
        Change{"contentsRect", [](Layer& layer) { layer.content.contentsRect.width = 0.999; }, "C"},
        Change{"contentsCenter", [](Layer& layer) { layer.content.contentsCenter.y = 0.001; }, "C"},
        Change{"borderColorRed", [](Layer& layer) { layer.appearance.borderColor->red = 0.11; }, "A"},
        Change{"borderColorGone", [](Layer& layer) { layer.appearance.borderColor.reset(); }, "A"},
        Change{"backgroundColorGreen", [](Layer& layer) { layer.appearance.backgroundColor->green = 0.61; },
               "A"},
        Change{"backgroundColorBlue", [](Layer& layer) { layer.appearance.backgroundColor->blue = 0.71; },
               "A"},
        Change{"backgroundColorGone", [](Layer& layer) { layer.appearance.backgroundColor.reset(); }, "A"},
        Change{"contentsGravity",
               [](Layer& layer) { layer.appearance.contentsGravity = platform::ContentsGravity::top; }, "A"},
        Change{"isHidden", [](Layer& layer) { layer.appearance.hidden = true; }, "A"},
        Change{"masksToBounds", [](Layer& layer) { layer.appearance.masksToBounds = true; }, "A"},
        Change{"maskOfEqualLooks",
               [](Layer& layer) { layer.appearance.mask = std::make_shared<const Layer>(); }, "A"},
        Change{"maskGone", [](Layer& layer) { layer.appearance.mask = nullptr; }, "A"},
        Change{"isDoubleSided", [](Layer& layer) { layer.appearance.isDoubleSided = false; }, "A"},
        Change{"cornerRadius", [](Layer& layer) { layer.appearance.cornerRadius = 0.001; }, "A"},
        Change{"maskedCorners",
               [](Layer& layer) { layer.appearance.maskedCorners = platform::topLeftCorner; }, "A"},
        Change{"borderWidth", [](Layer& layer) { layer.appearance.borderWidth = 0.001; }, "A"},
        Change{"isOpaque", [](Layer& layer) { layer.rendering.opaque = true; }, "R"},
        Change{"edgeAntialiasingMask",
               [](Layer& layer) { layer.rendering.edgeAntialiasingMask = platform::leftEdge; }, "R"},
        Change{"isGeometryFlipped", [](Layer& layer) { layer.rendering.isGeometryFlipped = true; }, "R"},
        Change{"drawsAsynchronously", [](Layer& layer) { layer.rendering.drawsAsynchronously = true; }, "R"},
        Change{"shouldRasterize", [](Layer& layer) { layer.rendering.shouldRasterize = true; }, "R"},
        Change{"rasterizationScale", [](Layer& layer) { layer.rendering.rasterizationScale = 1.001; }, "R"},
        Change{"frameBy5", [](Layer& layer) { layer.geometry.anchorPoint.x -= 5.0 / 64; }, "G"},
        Change{"boundsOriginBy5", [](Layer& layer) { layer.geometry.bounds.y = 5; }, "G"},
        Change{"boundsWidthBy5", [](Layer& layer) { layer.geometry.bounds.width += 5; }, "G"},
        Change{"boundsHeightBy5", [](Layer& layer) { layer.geometry.bounds.height -= 5; }, "G"},
        Change{"positionX", [](Layer& layer) { layer.geometry.position.x += 0.001; }, "G"},
        Change{"positionY", [](Layer& layer) { layer.geometry.position.y -= 0.001; }, "G"},
        Change{"zPosition", [](Layer& layer) { layer.geometry.zPosition = 0.001; }, "GT"},
        Change{"transformDepth", [](Layer& layer) { layer.transform.transform.m[2][2] = 1.001; }, "T"},
        Change{"transformPerspective", [](Layer& layer) { layer.transform.transform.m[2][3] = 0.001; }, "T"},
        Change{"transformMovesLittle", [](Layer& layer) { layer.transform.transform.m[3][0] = 0.001; }, "T"},
        Change{"transformMovesFar", [](Layer& layer) { layer.transform.transform.m[3][0] = 5; }, "GT"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    WhatIsNotLookedAt, OfAProperty,
    testing::Values(
        Change{"contents", [](Layer& layer) { layer.content.contents = Image::filled(2, 2, 7); }, ""},
        Change{"borderColorAlpha", [](Layer& layer) { layer.appearance.borderColor->alpha = 1; }, ""},
        Change{"backgroundColorAlpha", [](Layer& layer) { layer.appearance.backgroundColor->alpha = 0; }, ""},
        Change{"opacity", [](Layer& layer) { layer.appearance.opacity = 0; }, ""},
        Change{"antialiasing", [](Layer& layer) { layer.appearance.allowsEdgeAntialiasing = true; }, ""},
        Change{"groupOpacity", [](Layer& layer) { layer.appearance.allowsGroupOpacity = false; }, ""},
        Change{"shadow",
               [](Layer& layer) {
                   layer.appearance.shadowColor.reset();
                   layer.appearance.shadowOffset = {9, 9};
                   layer.appearance.shadowOpacity = 1;
                   layer.appearance.shadowPath = platform::ShadowPath{{1, 2, 3, 4}, 5};
                   layer.appearance.shadowRadius = 9;
               },
               ""},
        Change{"style", [](Layer& layer) { layer.appearance.style = {{"key", "value"}}; }, ""},
        Change{"filters", [](Layer& layer) { layer.filters.filters = {"sepia"}; }, ""},
        Change{"anchorPointZ", [](Layer& layer) { layer.geometry.anchorPointZ = 9; }, ""},
        Change{"contentsScale", [](Layer& layer) { layer.geometry.contentsScale = 3; }, ""},
        Change{"frameBy4_9", [](Layer& layer) { layer.geometry.anchorPoint.x -= 4.9 / 64; }, ""},
        Change{"boundsOriginBy4_9", [](Layer& layer) { layer.geometry.bounds.y = 4.9; }, ""},
        Change{"boundsWidthBy4_9", [](Layer& layer) { layer.geometry.bounds.width += 4.9; }, ""},
        Change{"sublayerTransform",
               [](Layer& layer) {
                   layer.transform.sublayerTransform = Transform3D::fromAffine(AffineTransform::scale(2, 2));
               },
               ""}),
    nameOf);

TEST(LayerComparison, EachSideOfARectangleMayDifferByLessThanFivePoints) {
    const Rect before{10, 20, 100, 200};
    EXPECT_TRUE(isApproximatelyEqual(before, before));
    for (double Rect::* side : {&Rect::x, &Rect::y, &Rect::width, &Rect::height}) {
        for (const double direction : {1.0, -1.0}) {
            Rect after = before;
            after.*side = before.*side + 4.9 * direction;
            EXPECT_TRUE(isApproximatelyEqual(before, after));
            after.*side = before.*side + 5.0 * direction;
            EXPECT_FALSE(isApproximatelyEqual(before, after));
        }
    }
    EXPECT_TRUE(isApproximatelyEqual(before, {14.9, 15.1, 104.9, 195.1})) << "all four at once";
}

TEST(LayerComparison, WhatIsNotANumberIsAChange) {
    EXPECT_FALSE(isApproximatelyEqual({notANumber, 0, 1, 1}, {notANumber, 0, 1, 1}));
    EXPECT_FALSE(isApproximatelyEqual({infinity, 0, 1, 1}, {infinity, 0, 1, 1}));
    View view;
    view.mutableLayer().geometry.zPosition = notANumber;
    EXPECT_FALSE(isSame(view, view));
}

TEST(LayerComparison, NegativeZeroIsZero) {
    View before;
    View after;
    after.mutableLayer().geometry.position = {-0.0, -0.0};
    after.mutableLayer().transform.transform.m[0][1] = -0.0;
    EXPECT_TRUE(isSame(before, after));
}

TEST(LayerComparison, ColourIsItsRedGreenAndBlue) {
    const Color before{0.1, 0.2, 0.3, 0.4};
    EXPECT_TRUE(isEqualIgnoringAlpha(before, Color{0.1, 0.2, 0.3, 1}));
    EXPECT_FALSE(isEqualIgnoringAlpha(before, Color{0.11, 0.2, 0.3, 0.4}));
    EXPECT_FALSE(isEqualIgnoringAlpha(before, Color{0.1, 0.21, 0.3, 0.4}));
    EXPECT_FALSE(isEqualIgnoringAlpha(before, Color{0.1, 0.2, 0.31, 0.4}));
    EXPECT_FALSE(isEqualIgnoringAlpha(before, std::nullopt));
}

TEST(LayerComparison, NoColourEqualsNoColourOnly) {
    View none;
    View transparent;
    transparent.mutableLayer().appearance.backgroundColor = Color{0, 0, 0, 0};
    EXPECT_TRUE(isSame(none, none));
    EXPECT_FALSE(isSame(none, transparent));
    EXPECT_FALSE(isSame(transparent, none));
}

TEST(LayerComparison, MaskMadeAtThePlaceOfOneThatIsGoneIsAnotherMask) {
    const Layer place;
    const auto maskThere = [&place] { return std::shared_ptr<const Layer>(&place, [](const Layer*) {}); };
    View view;
    view.mutableLayer().appearance.mask = maskThere();
    const auto before = LayerSnapshot::capture(view);
    EXPECT_TRUE(isEqual(before, LayerSnapshot::capture(view)));
    view.mutableLayer().appearance.mask = maskThere();
    EXPECT_FALSE(isEqual(before, LayerSnapshot::capture(view)));
}

TEST(LayerComparison, TwoMasksOfOneOwnerAreTwo) {
    const auto owner = std::make_shared<std::array<Layer, 2>>();
    View view;
    view.mutableLayer().appearance.mask = std::shared_ptr<const Layer>(owner, &owner->at(0));
    const auto before = LayerSnapshot::capture(view);
    view.mutableLayer().appearance.mask = std::shared_ptr<const Layer>(owner, &owner->at(1));
    EXPECT_FALSE(isEqual(before, LayerSnapshot::capture(view)));
}

TEST(LayerComparison, LayersWithoutSublayersAreEqual) {
    EXPECT_TRUE(isSame(View(), View()));
    EXPECT_TRUE(isSame(*sampleTree(), *sampleTree()));
}

TEST(LayerComparison, SublayerMoreOrLessIsAChange) {
    const auto before = sampleTree();
    const auto after = sampleTree();
    after->subviews()[0]->addSubview(std::make_shared<View>());
    EXPECT_FALSE(isSame(*before, *after));
    EXPECT_FALSE(isSame(*after, *before));
}

TEST(LayerComparison, SublayersAreComparedInTheirOrder) {
    const auto redAndBlue = [](const Color& first, const Color& second) {
        auto root = std::make_shared<View>();
        for (const Color& color : {first, second}) {
            const auto child = std::make_shared<View>();
            child->mutableLayer().appearance.backgroundColor = color;
            root->addSubview(child);
        }
        return root;
    };
    const Color red{1, 0, 0, 1};
    const Color blue{0, 0, 1, 1};
    EXPECT_TRUE(isSame(*redAndBlue(red, blue), *redAndBlue(red, blue)));
    EXPECT_FALSE(isSame(*redAndBlue(red, blue), *redAndBlue(blue, red)));
}

TEST(LayerComparison, SameLayersInAnotherNestingAreAChange) {
    const auto beside = std::make_shared<View>();
    beside->addSubview(std::make_shared<View>());
    beside->addSubview(std::make_shared<View>());
    const auto inside = std::make_shared<View>();
    inside->addSubview(std::make_shared<View>());
    inside->subviews()[0]->addSubview(std::make_shared<View>());
    EXPECT_FALSE(isSame(*beside, *inside));
    EXPECT_FALSE(isSame(*inside, *beside));
}

/// A root with `depth` levels below it.
std::shared_ptr<View> chain(std::size_t depth) {
    auto root = std::make_shared<View>();
    auto last = root;
    for (std::size_t level = 0; level < depth; ++level) {
        const auto next = std::make_shared<View>();
        last->addSubview(next);
        last = next;
    }
    return root;
}

TEST(LayerComparison, ADifferenceAtTheBottomOfAVeryDeepTreeIsFound) {
    const auto before = chain(LayerReplicator::maxDepth - 1);
    const auto after = chain(LayerReplicator::maxDepth - 1);
    EXPECT_TRUE(isSame(*before, *after));
    const View* last = after.get();
    while (!last->subviews().empty()) {
        last = last->subviews()[0].get();
    }
    const_cast<View*>(last)->mutableLayer().appearance.hidden = true;
    EXPECT_FALSE(isSame(*before, *after));
}

TEST(LayerSnapshot, HasOneStateForEachLayerOfAnUnmaskedCopyAndBeforeThoseBelow) {
    const auto root = std::make_shared<View>();
    for (const double x : {1.0, 2.0}) {
        const auto child = std::make_shared<View>();
        child->setFrame({x, 0, 10, 10});
        child->addSubview(std::make_shared<platform::Label>());
        root->addSubview(child);
    }
    const auto snapshot = LayerSnapshot::capture(*root);
    const auto copy = LayerReplicator().replicateLayerTree(*root, false);
    const std::vector<LayerState> expected = [&copy] {
        std::vector<LayerState> states;
        const std::function<void(const Layer&)> add = [&](const Layer& layer) {
            states.emplace_back(layer).sublayerCount = layer.sublayers().size();
            for (const auto& sublayer : layer.sublayers()) {
                add(*sublayer);
            }
        };
        add(*copy);
        return states;
    }();
    ASSERT_EQ(snapshot.layers().size(), expected.size());
    for (std::size_t number = 0; number < expected.size(); ++number) {
        EXPECT_EQ(changedBy(snapshot.layers()[number], expected[number]), "") << number;
    }
}

TEST(LayerSnapshot, PresentationLayerIsPreferred) {
    View view;
    const auto before = LayerSnapshot::capture(view);
    const auto onScreen = std::make_shared<Layer>();
    onScreen->appearance.cornerRadius = 9;
    view.setPresentationLayer(onScreen);
    EXPECT_EQ(LayerSnapshot::capture(view).layers()[0].cornerRadius, 9);
    view.setPresentationLayer(nullptr);
    EXPECT_TRUE(isEqual(before, LayerSnapshot::capture(view))) << "the animation is over";
}

TEST(LayerSnapshot, DoesNotFollowTheLiveLayer) {
    View view;
    const auto before = LayerSnapshot::capture(view);
    view.mutableLayer().appearance.cornerRadius = 9;
    EXPECT_EQ(before.layers()[0].cornerRadius, 0);
}

TEST(LayerSnapshot, KeepsNeitherTheLayersNorTheirMasksAlive) {
    class Animated final : public View {
      public:
        std::shared_ptr<const Layer> presentationLayer() const override {
            auto layer = std::make_shared<Layer>();
            layer->content.contents = Image::filled(2, 2, 7);
            auto mask = std::make_shared<Layer>();
            mask->content.contents = Image::filled(2, 2, 7);
            layer->appearance.mask = mask;
            lastLayer = layer;
            lastMask = mask;
            return layer;
        }
        mutable std::weak_ptr<const Layer> lastLayer;
        mutable std::weak_ptr<const Layer> lastMask;
    };
    const Animated view;
    const auto snapshot = LayerSnapshot::capture(view);
    EXPECT_TRUE(view.lastLayer.expired());
    EXPECT_TRUE(view.lastMask.expired());
    EXPECT_FALSE(isEqual(snapshot, LayerSnapshot::capture(view))) << "a new mask each time";
}

/// Builds the next level whenever it is asked.
class Endless final : public View {
  public:
    const std::vector<std::shared_ptr<View>>& subviews() const override {
        children = {std::make_shared<Endless>()};
        return children;
    }
    mutable std::vector<std::shared_ptr<View>> children;
};

TEST(LayerSnapshot, TreeWithoutEndIsCutOffLikeACopy) {
    const Endless root;
    const auto snapshot = LayerSnapshot::capture(root);
    ASSERT_EQ(snapshot.layers().size(), LayerReplicator::maxDepth + 1);
    const auto& last = snapshot.layers().back();
    EXPECT_EQ(last.cornerRadius, 4) << "a mask block";
    EXPECT_EQ(last.sublayerCount, 0U);
    EXPECT_TRUE(isEqual(snapshot, LayerSnapshot::capture(root)));
}

TEST(LayerSnapshot, SubviewsMayLeaveAndComeWhileTheyAreCaptured) {
    class Restless final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            const auto parent = superview();
            const_cast<Restless*>(this)->removeFromSuperview();
            parent->addSubview(std::make_shared<View>());
            return View::subviews();
        }
    };
    const auto root = std::make_shared<View>();
    root->addSubview(std::make_shared<Restless>());
    root->addSubview(std::make_shared<View>());
    EXPECT_EQ(LayerSnapshot::capture(*root).layers().size(), 3U)
        << "those there were when they were asked for";
}

}  // namespace
}  // namespace mireth
