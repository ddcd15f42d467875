// The detached copy of a view tree: what is copied, what is masked, what is not walked, where it ends.
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/ViewController.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/MaskColors.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::ImageView;
using platform::Label;
using platform::Layer;
using platform::View;
using platform::ViewClass;

class HostingController final : public platform::ViewController,
                                public platform::AnyUIHostingViewController {};

std::shared_ptr<Layer> copyOf(const View& view, bool masking = true, bool animations = true) {
    return LayerReplicator().replicateLayerTree(view, masking, animations);
}

bool isMaskBlock(const Layer& layer) {
    return layer.appearance.backgroundColor == imageMaskStripeColor && layer.appearance.cornerRadius == 4.0 &&
           !layer.content.contents.hasBitmap() && layer.sublayers().empty();
}

std::shared_ptr<View> viewAt(Rect frame) {
    auto view = std::make_shared<View>();
    view->setFrame(frame);
    return view;
}

void fillWithUnusualValues(Layer& layer) {
    layer.content.contents = Image::filled(2, 2, 0xFF112233U);
    layer.content.contentsRect = {0.1, 0.2, 0.3, 0.4};
    layer.content.contentsCenter = {0.2, 0.2, 0.6, 0.6};
    layer.appearance.allowsEdgeAntialiasing = true;
    layer.appearance.allowsGroupOpacity = false;
    layer.appearance.borderColor = Color{1, 0, 0, 1};
    layer.appearance.borderWidth = 3;
    layer.appearance.contentsGravity = platform::ContentsGravity::center;
    layer.appearance.isDoubleSided = false;
    layer.appearance.hidden = true;
    layer.appearance.mask = std::make_shared<Layer>();
    layer.appearance.maskedCorners = platform::topLeftCorner;
    layer.appearance.masksToBounds = true;
    layer.appearance.opacity = 0.5;
    layer.appearance.shadowColor = Color{0, 1, 0, 1};
    layer.appearance.shadowOffset = {4, 5};
    layer.appearance.shadowOpacity = 0.25;
    layer.appearance.shadowPath = platform::ShadowPath{{1, 2, 3, 4}, 5};
    layer.appearance.shadowRadius = 6;
    layer.appearance.style = {{"key", "value"}};
    layer.appearance.cornerRadius = 7;
    layer.appearance.backgroundColor = Color{0, 0, 1, 1};
    layer.filters.backgroundFilters = {"blur"};
    layer.filters.compositingFilter = "multiply";
    layer.filters.filters = {"sepia"};
    layer.filters.magnificationFilter = platform::LayerFilter::nearest;
    layer.filters.minificationFilterBias = 0.75;
    layer.filters.minificationFilter = platform::LayerFilter::trilinear;
    layer.rendering = {true, platform::leftEdge, true, true, true, 3};
    layer.geometry = {1, {0.25, 0.75}, {10, 20, 30, 40}, 2, {50, 60}, 7};
    layer.transform.transform = Transform3D::fromAffine(AffineTransform::rotation(0.5));
    layer.transform.sublayerTransform = Transform3D::fromAffine(AffineTransform::scale(2, 3));
}

TEST(LayerReplicator, EveryPropertyIsCopied) {
    View view;
    fillWithUnusualValues(view.mutableLayer());
    const Layer& source = view.layer();
    const auto copy = copyOf(view);

    EXPECT_NE(copy.get(), &source);
    EXPECT_TRUE(copy->content.contents.isSameBitmap(source.content.contents)) << "shared, not copied";
    EXPECT_EQ(copy->content.contentsRect, source.content.contentsRect);
    EXPECT_EQ(copy->content.contentsCenter, source.content.contentsCenter);
    EXPECT_TRUE(copy->appearance.allowsEdgeAntialiasing);
    EXPECT_FALSE(copy->appearance.allowsGroupOpacity);
    EXPECT_EQ(copy->appearance.borderColor, source.appearance.borderColor);
    EXPECT_EQ(copy->appearance.borderWidth, 3);
    EXPECT_EQ(copy->appearance.contentsGravity, platform::ContentsGravity::center);
    EXPECT_FALSE(copy->appearance.isDoubleSided);
    EXPECT_TRUE(copy->appearance.hidden);
    EXPECT_EQ(copy->appearance.mask, source.appearance.mask);
    EXPECT_EQ(copy->appearance.maskedCorners, platform::topLeftCorner);
    EXPECT_TRUE(copy->appearance.masksToBounds);
    EXPECT_EQ(copy->appearance.opacity, 0.5);
    EXPECT_EQ(copy->appearance.shadowColor, source.appearance.shadowColor);
    EXPECT_EQ(copy->appearance.shadowOffset, source.appearance.shadowOffset);
    EXPECT_EQ(copy->appearance.shadowOpacity, 0.25);
    EXPECT_EQ(copy->appearance.shadowPath, source.appearance.shadowPath);
    EXPECT_EQ(copy->appearance.shadowRadius, 6);
    EXPECT_EQ(copy->appearance.style, source.appearance.style);
    EXPECT_EQ(copy->appearance.cornerRadius, 7);
    EXPECT_EQ(copy->appearance.backgroundColor, source.appearance.backgroundColor);
    EXPECT_EQ(copy->filters.backgroundFilters, source.filters.backgroundFilters);
    EXPECT_EQ(copy->filters.compositingFilter, "multiply");
    EXPECT_EQ(copy->filters.filters, source.filters.filters);
    EXPECT_EQ(copy->filters.magnificationFilter, platform::LayerFilter::nearest);
    EXPECT_EQ(copy->filters.minificationFilterBias, 0.75);
    EXPECT_EQ(copy->filters.minificationFilter, platform::LayerFilter::trilinear);
    EXPECT_TRUE(copy->rendering.opaque);
    EXPECT_EQ(copy->rendering.edgeAntialiasingMask, platform::leftEdge);
    EXPECT_TRUE(copy->rendering.isGeometryFlipped);
    EXPECT_TRUE(copy->rendering.drawsAsynchronously);
    EXPECT_TRUE(copy->rendering.shouldRasterize);
    EXPECT_EQ(copy->rendering.rasterizationScale, 3);
    EXPECT_EQ(copy->geometry, source.geometry);
    EXPECT_EQ(copy->transform, source.transform);
    EXPECT_EQ(copy->frame(), source.frame());
}

TEST(LayerReplicator, CopyDoesNotFollowTheLiveLayer) {
    const auto view = viewAt({0, 0, 10, 10});
    const auto copy = copyOf(*view);
    view->setFrame({5, 5, 20, 20});
    EXPECT_EQ(copy->frame(), (Rect{0, 0, 10, 10}));
}

TEST(LayerReplicator, SubviewsAreCopiedInOrder) {
    const auto root = viewAt({0, 0, 100, 100});
    for (const double x : {1.0, 2.0, 3.0}) {
        root->addSubview(viewAt({x, 0, 10, 10}));
    }
    const auto copy = copyOf(*root);
    ASSERT_EQ(copy->sublayers().size(), 3U);
    EXPECT_EQ(copy->sublayers()[0]->frame().x, 1);
    EXPECT_EQ(copy->sublayers()[2]->frame().x, 3);
}

TEST(LayerReplicator, MaskBlockHasTheViewsGeometryAndNothingElseOfIt) {
    Label label;
    fillWithUnusualValues(label.mutableLayer());
    const auto block = copyOf(label);
    EXPECT_TRUE(isMaskBlock(*block));
    EXPECT_EQ(block->geometry, label.layer().geometry);
    EXPECT_EQ(block->frame(), label.layer().frame()) << "also of a turned view";
    EXPECT_EQ(block->appearance.opacity, 1);
    EXPECT_FALSE(block->appearance.hidden);
    EXPECT_EQ(block->appearance.mask, nullptr);
    EXPECT_FALSE(block->appearance.borderColor);
    EXPECT_TRUE(block->filters.filters.empty());
}

TEST(LayerReplicator, SubviewsOfAMaskedViewAreNotAskedFor) {
    class Unwalkable final : public View {
      public:
        Unwalkable() : View(ViewClass::label()) {}
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            throw std::logic_error("walked");
        }
    };
    EXPECT_TRUE(isMaskBlock(*copyOf(Unwalkable())));
}

TEST(LayerReplicator, TextFieldInAMaskedContainerIsNotCopiedSeparately) {
    const ViewClass& container = ViewClass::registerClass("ReplicatorContainer", &ViewClass::view());
    const auto root = viewAt({0, 0, 100, 100});
    const auto masked = std::make_shared<View>(container);
    masked->addSubview(std::make_shared<platform::TextField>());
    root->addSubview(masked);
    const auto copy = LayerReplicator({&container}).replicateLayerTree(*root, true);
    ASSERT_EQ(copy->sublayers().size(), 1U);
    EXPECT_TRUE(isMaskBlock(*copy->sublayers()[0]));
}

TEST(LayerReplicator, WithoutMaskingEveryViewIsCopiedInFull) {
    const ViewClass& named = ViewClass::registerClass("ReplicatorNamed", &ViewClass::view());
    const auto root = std::make_shared<View>(named);
    const auto label = std::make_shared<Label>();
    label->mutableLayer().content.contents = Image::filled(1, 1, 0xFFFFFFFFU);
    label->addSubview(std::make_shared<View>());
    root->addSubview(label);
    const auto copy = LayerReplicator({&named}).replicateLayerTree(*root, false);
    ASSERT_EQ(copy->sublayers().size(), 1U);
    EXPECT_TRUE(copy->sublayers()[0]->content.contents.hasBitmap());
    EXPECT_EQ(copy->sublayers()[0]->sublayers().size(), 1U);
}

/// Shows more where nothing is masked, and counts how often it is asked.
class Drawing final : public View {
  public:
    using View::View;
    std::shared_ptr<const View> unmasked() const override {
        ++timesAsked;
        auto shown = std::make_shared<View>();
        shown->mutableLayer().content.contents = Image::filled(1, 1, 0xFF112233U);
        shown->addSubview(viewAt({1, 2, 3, 4}));
        return shown;
    }
    mutable int timesAsked = 0;
};

TEST(LayerReplicator, WithoutMaskingTheUnmaskedViewStandsInPlaceOfTheView) {
    const auto root = viewAt({0, 0, 100, 100});
    const auto drawing = std::make_shared<Drawing>();
    drawing->addSubview(viewAt({5, 6, 7, 8}));
    root->addSubview(drawing);
    const auto copy = copyOf(*root, false);
    ASSERT_EQ(copy->sublayers().size(), 1U);
    EXPECT_TRUE(copy->sublayers()[0]->content.contents.hasBitmap());
    ASSERT_EQ(copy->sublayers()[0]->sublayers().size(), 1U);
    EXPECT_EQ(copy->sublayers()[0]->sublayers()[0]->frame(), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(drawing->timesAsked, 1);
}

TEST(LayerReplicator, NoViewIsAskedForItsUnmaskedSelfWhileMaskingIsEnabled) {
    const auto root = std::make_shared<Drawing>();
    const auto label = std::make_shared<Drawing>(ViewClass::label());
    const auto plain = std::make_shared<Drawing>();
    root->addSubview(label);
    root->addSubview(plain);
    const auto copy = copyOf(*root);
    EXPECT_EQ(root->timesAsked + label->timesAsked + plain->timesAsked, 0);
    ASSERT_EQ(copy->sublayers().size(), 2U);
    EXPECT_FALSE(copy->sublayers()[1]->content.contents.hasBitmap());
}

TEST(LayerReplicator, AnUnmaskedViewThatHoldsItsViewComesToAnEnd) {
    class Endless final : public View {
      public:
        std::shared_ptr<const View> unmasked() const override {
            auto shown = std::make_shared<View>();
            shown->addSubview(std::make_shared<Endless>());
            return shown;
        }
    };
    EXPECT_TRUE(copyOf(Endless(), false));
}

TEST(LayerReplicator, PresentationLayerIsPreferred) {
    View view;
    view.setFrame({0, 0, 10, 10});
    auto onScreen = std::make_shared<Layer>();
    onScreen->setFrame({50, 60, 70, 80});
    view.setPresentationLayer(onScreen);
    EXPECT_EQ(copyOf(view)->frame(), (Rect{50, 60, 70, 80}));
    EXPECT_EQ(copyOf(view, true, false)->frame(), (Rect{0, 0, 10, 10}));
}

TEST(LayerReplicator, MaskBlockIsWhereTheViewIsOnScreen) {
    Label label;
    label.setFrame({0, 0, 10, 10});
    auto onScreen = std::make_shared<Layer>();
    onScreen->setFrame({50, 60, 70, 80});
    onScreen->transform.transform = Transform3D::fromAffine(AffineTransform::rotation(1));
    label.setPresentationLayer(onScreen);
    const auto block = copyOf(label);
    EXPECT_TRUE(isMaskBlock(*block));
    EXPECT_EQ(block->frame(), onScreen->frame());
}

TEST(LayerReplicator, TintedImageTakesThePlaceOfTheContents) {
    ImageView view(ViewClass::registerClass("_ReplicatorShadowView", &ViewClass::imageView()));
    view.setImage(Image::filled(2, 2, 0xFF0000FFU));
    EXPECT_EQ(copyOf(view)->content.contents.pixels()[0], 0xFF0000FFU);
    view.setTint(Color{1, 0, 0, 1});
    EXPECT_EQ(copyOf(view)->content.contents.pixels()[0], 0xFFFF0000U);
}

TEST(LayerReplicator, DeclarativeContentIsMaskedBelowItsController) {
    const auto controller = std::make_shared<HostingController>();
    const auto inner = std::make_shared<platform::ViewController>("Inner");
    const auto root = viewAt({0, 0, 100, 100});
    const auto hosted = viewAt({0, 0, 50, 50});
    const auto beside = viewAt({50, 0, 50, 50});
    root->addSubview(hosted);
    root->addSubview(beside);
    controller->setView(hosted);
    inner->setView(beside);
    const auto copy = copyOf(*root);
    EXPECT_FALSE(isMaskBlock(*copy));
    EXPECT_TRUE(isMaskBlock(*copy->sublayers()[0]));
    EXPECT_FALSE(isMaskBlock(*copy->sublayers()[1]));
}

TEST(LayerReplicator, ControllerAboveTheRootCounts) {
    const auto controller = std::make_shared<HostingController>();
    const auto window = viewAt({0, 0, 100, 100});
    const auto root = viewAt({0, 0, 50, 50});
    window->addSubview(root);
    controller->setView(window);
    EXPECT_TRUE(isMaskBlock(*copyOf(*root)));
    EXPECT_FALSE(isMaskBlock(*copyOf(*root, false)));
}

TEST(LayerReplicator, PlainControllerInsideDeclarativeContentIsHiddenWithIt) {
    const auto hosting = std::make_shared<HostingController>();
    const auto plain = std::make_shared<platform::ViewController>();
    const auto root = viewAt({0, 0, 100, 100});
    const auto hosted = viewAt({0, 0, 50, 50});
    const auto nested = viewAt({0, 0, 50, 50});
    root->addSubview(hosted);
    hosted->addSubview(nested);
    hosting->setView(hosted);
    plain->setView(nested);
    EXPECT_TRUE(isMaskBlock(*copyOf(*root)->sublayers()[0]));
}

TEST(LayerReplicator, NullSubviewsAreLeftOut) {
    class Holey final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override { return children; }
        std::vector<std::shared_ptr<View>> children{nullptr, std::make_shared<View>(), nullptr};
    };
    EXPECT_EQ(copyOf(Holey())->sublayers().size(), 1U);
}

TEST(LayerReplicator, SubviewsBuiltLazilyMayChangeTheirSuperview) {
    class Greedy final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            for (int i = 0; i < 100; ++i) {
                superview()->addSubview(std::make_shared<View>());
            }
            return View::subviews();
        }
    };
    const auto root = viewAt({0, 0, 100, 100});
    root->addSubview(std::make_shared<Greedy>());
    root->addSubview(std::make_shared<View>());
    EXPECT_EQ(copyOf(*root)->sublayers().size(), 2U) << "those there were when they were asked for";
}

TEST(LayerReplicator, SubviewThatLeavesWhileItIsCopiedStaysAlive) {
    class Leaving final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            const_cast<Leaving*>(this)->removeFromSuperview();
            return View::subviews();
        }
    };
    const auto root = viewAt({0, 0, 100, 100});
    root->addSubview(std::make_shared<Leaving>());
    EXPECT_EQ(copyOf(*root)->sublayers().size(), 1U);
    EXPECT_TRUE(root->subviews().empty());
}

TEST(LayerReplicator, ViewThatIsItsOwnAncestorIsAMaskBlock) {
    class Ring final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override { return children; }
        std::vector<std::shared_ptr<View>> children;
    };
    const auto ring = std::make_shared<Ring>();
    const auto inner = std::make_shared<Ring>();
    ring->children = {inner, inner};
    inner->children = {ring, inner};
    for (const bool masking : {true, false}) {
        const auto copy = copyOf(*ring, masking);
        ASSERT_EQ(copy->sublayers().size(), 2U);
        ASSERT_EQ(copy->sublayers()[0]->sublayers().size(), 2U);
        EXPECT_TRUE(isMaskBlock(*copy->sublayers()[0]->sublayers()[0]));
        EXPECT_TRUE(isMaskBlock(*copy->sublayers()[0]->sublayers()[1]));
    }
    ring->children.clear();
    inner->children.clear();
}

std::size_t depthOf(const Layer& layer) {
    std::size_t depth = 1;
    for (const Layer* next = &layer; !next->sublayers().empty(); ++depth) {
        next = next->sublayers()[0].get();
    }
    return depth;
}

TEST(LayerReplicator, TreeWithoutEndIsCutOffByAMaskBlock) {
    /// Builds the next level whenever it is asked.
    class Endless final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            children = {std::make_shared<Endless>()};
            return children;
        }
        mutable std::vector<std::shared_ptr<View>> children;
    };
    const auto copy = copyOf(Endless());
    EXPECT_EQ(depthOf(*copy), LayerReplicator::maxDepth + 1);
    const Layer* last = copy.get();
    while (!last->sublayers().empty()) {
        EXPECT_FALSE(isMaskBlock(*last));
        last = last->sublayers()[0].get();
    }
    EXPECT_TRUE(isMaskBlock(*last));
}

TEST(LayerReplicator, TreeThatMultipliesIsCutOffByMaskBlocks) {
    /// Each level shows the next one twice: 2^40 views in the end.
    class Twice final : public View {
      public:
        const std::vector<std::shared_ptr<View>>& subviews() const override { return children; }
        std::vector<std::shared_ptr<View>> children;
    };
    auto next = std::make_shared<Twice>();
    for (int level = 0; level < 40; ++level) {
        auto above = std::make_shared<Twice>();
        above->children = {next, next};
        next = above;
    }
    const auto copy = copyOf(*next);
    EXPECT_EQ(copy->sublayers().size(), 2U);
    EXPECT_TRUE(isMaskBlock(*copy->sublayers()[1])) << "the first half has used up what there is";
}

TEST(LayerReplicator, WhatAViewThrowsReachesTheCaller) {
    class Broken final : public View {
      public:
        const Layer& layer() const override { throw std::runtime_error("widget is gone"); }
    };
    const auto root = viewAt({0, 0, 100, 100});
    root->addSubview(std::make_shared<Broken>());
    EXPECT_THROW(copyOf(*root), std::runtime_error);
}

}  // namespace
}  // namespace mireth
