// Which view lies under a point.
#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "MirethVex/Platform/Window.hpp"

namespace mireth::platform {
namespace {

struct HitTest : testing::Test {
    std::shared_ptr<Window> window = std::make_shared<Window>(Size{100, 100});

    static std::shared_ptr<View> add(View& parent, const Rect& frame) {
        auto view = std::make_shared<View>();
        view->setFrame(frame);
        parent.addSubview(view);
        return view;
    }
    static void turn(View& view, const AffineTransform& transform) {
        view.mutableLayer().transform.transform = Transform3D::fromAffine(transform);
    }
};

TEST_F(HitTest, TheDeepestViewIsFound) {
    const auto outer = add(*window, {10, 10, 50, 50});
    const auto inner = add(*outer, {10, 10, 20, 20});
    EXPECT_EQ(window->hitTest({25, 25}), inner);
    EXPECT_EQ(window->hitTest({15, 15}), outer);
    EXPECT_EQ(window->hitTest({5, 5}), window);
    EXPECT_EQ(window->hitTest({100, 100}), nullptr);
}

TEST_F(HitTest, ThePointIsInTheViewsOwnCoordinates) {
    const auto outer = add(*window, {10, 10, 50, 50});
    const auto inner = add(*outer, {10, 10, 20, 20});
    EXPECT_EQ(outer->hitTest({10, 10}), inner);
    EXPECT_EQ(outer->hitTest({9, 9}), outer);
    outer->mutableLayer().geometry.bounds.x = 100;  // scrolled
    EXPECT_EQ(outer->hitTest({110, 10}), outer);
    EXPECT_EQ(window->hitTest({11, 11}), outer);
}

TEST_F(HitTest, OfSiblingsTheFrontOneIsFound) {
    const auto back = add(*window, {0, 0, 50, 50});
    const auto front = add(*window, {0, 0, 50, 50});
    EXPECT_EQ(window->hitTest({10, 10}), front);
    back->mutableLayer().geometry.zPosition = 1;
    EXPECT_EQ(window->hitTest({10, 10}), back);
    back->mutableLayer().geometry.zPosition = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(window->hitTest({10, 10}), front);
}

TEST_F(HitTest, HiddenViewsArePassedOverWithAllBelowThem) {
    const auto outer = add(*window, {0, 0, 50, 50});
    add(*outer, {0, 0, 50, 50});
    outer->mutableLayer().appearance.hidden = true;
    EXPECT_EQ(window->hitTest({10, 10}), window);
}

TEST_F(HitTest, ViewsThatAreAsGoodAsTransparentArePassedOver) {
    const auto outer = add(*window, {0, 0, 50, 50});
    const auto inner = add(*outer, {0, 0, 50, 50});
    outer->mutableLayer().appearance.opacity = 0.0099;
    EXPECT_EQ(window->hitTest({10, 10}), window);
    outer->mutableLayer().appearance.opacity = 0.01;
    EXPECT_EQ(window->hitTest({10, 10}), inner);
    outer->mutableLayer().appearance.opacity = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(window->hitTest({10, 10}), window);
}

TEST_F(HitTest, WhatAViewClipsAwayCannotBeTouched) {
    const auto outer = add(*window, {0, 0, 50, 50});
    const auto inner = add(*outer, {40, 0, 50, 50});
    EXPECT_EQ(window->hitTest({70, 10}), inner);
    outer->mutableLayer().appearance.masksToBounds = true;
    EXPECT_EQ(window->hitTest({70, 10}), window);
    EXPECT_EQ(window->hitTest({45, 10}), inner);
}

TEST_F(HitTest, TransformsAreUndone) {
    // A square of 40 about (50, 50), on its corner: the corner reaches (50, 50 - 28.3), the square did not.
    const auto view = add(*window, {30, 30, 40, 40});
    turn(*view, AffineTransform::rotation(std::numbers::pi / 4));
    EXPECT_EQ(window->hitTest({50, 23}), view);
    EXPECT_EQ(window->hitTest({31, 31}), window);
    turn(*view, AffineTransform::scale(2, 1));
    EXPECT_EQ(window->hitTest({11, 50}), view);
    EXPECT_EQ(window->hitTest({50, 29}), window);
}

TEST_F(HitTest, SublayerTransformsAndFlippedGeometryAreUndone) {
    const auto outer = add(*window, {0, 0, 100, 100});
    const auto inner = add(*outer, {0, 0, 10, 10});
    outer->mutableLayer().rendering.isGeometryFlipped = true;
    EXPECT_EQ(window->hitTest({5, 95}), inner);
    EXPECT_EQ(window->hitTest({5, 5}), outer);
    outer->mutableLayer().rendering.isGeometryFlipped = false;
    outer->mutableLayer().transform.sublayerTransform =
        Transform3D::fromAffine(AffineTransform::translation(50, 0));
    EXPECT_EQ(window->hitTest({55, 5}), inner);
}

TEST_F(HitTest, AViewThatIsSqueezedToALineCannotBeTouched) {
    const auto view = add(*window, {0, 0, 50, 50});
    add(*view, {0, 0, 50, 50});
    turn(*view, AffineTransform::scale(0, 1));
    EXPECT_EQ(window->hitTest({25, 25}), window);
    turn(*view, AffineTransform::scale(std::numeric_limits<double>::infinity(), 1));
    EXPECT_EQ(window->hitTest({25, 25}), window);
}

TEST_F(HitTest, ASenselessPointTouchesNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(window->hitTest({nan, 10}), nullptr);
    EXPECT_EQ(window->hitTest({10, std::numeric_limits<double>::infinity()}), nullptr);
}

TEST_F(HitTest, TheViewTreeIsAskedThroughItsVirtualFunctions) {
    struct Mirrored final : View {
        const std::vector<std::shared_ptr<View>>& subviews() const override { return widgets; }
        std::vector<std::shared_ptr<View>> widgets{std::make_shared<View>()};
    };
    const auto mirrored = std::make_shared<Mirrored>();
    mirrored->setFrame({0, 0, 50, 50});
    mirrored->widgets.front()->setFrame({0, 0, 10, 10});
    window->addSubview(mirrored);
    EXPECT_EQ(window->hitTest({5, 5}), mirrored->widgets.front());
}

TEST_F(HitTest, AVeryDeepTreeIsSearchedToItsEnd) {
    const auto deepest = std::make_shared<View>();
    deepest->setFrame({0, 0, 100, 100});
    auto root = deepest;
    for (int depth = 0; depth < 40'000; ++depth) {
        const auto parent = std::make_shared<View>();
        parent->setFrame({0, 0, 100, 100});
        parent->addSubview(root);
        root = parent;
    }
    window->addSubview(root);
    EXPECT_EQ(window->hitTest({10, 10}), deepest);
}

TEST_F(HitTest, AViewThatLiesInItselfIsFoundAllTheSame) {
    struct Endless final : View {
        const std::vector<std::shared_ptr<View>>& subviews() const override { return itself; }
        std::vector<std::shared_ptr<View>> itself;
    };
    const auto endless = std::make_shared<Endless>();
    endless->itself = {endless};
    endless->setFrame({0, 0, 100, 100});
    window->addSubview(endless);
    EXPECT_EQ(window->hitTest({10, 10}), endless);
    endless->itself.clear();
}

}  // namespace
}  // namespace mireth::platform
