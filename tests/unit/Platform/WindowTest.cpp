// The window's size and scale.
#include "MirethVex/Platform/Window.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numbers>
#include <vector>

namespace mireth::platform {
namespace {

TEST(Window, FillsItsSizeFromTheOrigin) {
    const Window window({390, 844}, 3.0);
    EXPECT_EQ(window.frame(), (Rect{0, 0, 390, 844}));
    EXPECT_EQ(window.bounds(), (Rect{0, 0, 390, 844}));
    EXPECT_EQ(window.screenScale(), 3.0);
    EXPECT_EQ(&window.viewClass(), &ViewClass::window());
}

TEST(Window, IsResizedInPlace) {
    Window window({390, 844});
    window.resize({844, 390});
    EXPECT_EQ(window.frame(), (Rect{0, 0, 844, 390}));
    window.setFrame({10, 20, 100, 100});
    window.resize({50, 60});
    EXPECT_EQ(window.frame(), (Rect{10, 20, 50, 60}));
}

TEST(Window, IsResizedInPlaceAlsoWhileATransformTurnsIt) {
    Window window({100, 100});
    window.mutableLayer().transform.transform =
        Transform3D::fromAffine(AffineTransform::rotation(std::numbers::pi / 4));
    window.resize({200, 100});
    EXPECT_EQ(window.bounds(), (Rect{0, 0, 200, 100}));
    EXPECT_EQ(window.layer().geometry.position, (Point{100, 50}));
}

TEST(Window, TellsItsPlatformWhenRecognisersComeAndGo) {
    struct Told final : Window {
        Told() : Window({1, 1}) {}
        void gestureRecognizersDidChange() override { counts.push_back(gestureRecognizers().size()); }
        std::vector<std::size_t> counts;
    };
    Told window;
    const auto recognizer = std::make_shared<GestureRecognizer>();
    window.addGestureRecognizer(recognizer);
    window.addGestureRecognizer(recognizer);
    window.removeGestureRecognizer(recognizer);
    window.removeGestureRecognizer(recognizer);
    EXPECT_EQ(window.counts, (std::vector<std::size_t>{1, 0}));
}

TEST(Window, SenselessScreenScaleIsOne) {
    EXPECT_EQ(Window({1, 1}, 0).screenScale(), 1.0);
    EXPECT_EQ(Window({1, 1}, -2).screenScale(), 1.0);
    EXPECT_EQ(Window({1, 1}, std::numeric_limits<double>::infinity()).screenScale(), 1.0);
}

}  // namespace
}  // namespace mireth::platform
