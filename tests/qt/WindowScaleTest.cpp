// How many pixels a point of a window has, on a screen that has more than one: run with QT_SCALE_FACTOR=2.
#include <gtest/gtest.h>

#include <QWidget>
#include <QWindow>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"

namespace mireth::qttest {

namespace {

TEST(QtWindowScale, OfWidgetsIsThatOfTheirScreenBeforeTheyAreShown) {
    const qt::QtPlatform platform;
    QWidget window;
    const auto recorded = platform.windowOf(window);
    EXPECT_EQ(recorded->screenScale(), 2);
    window.show();
    runFor(0.01);
    EXPECT_EQ(recorded->screenScale(), 2);
}

TEST(QtWindowScale, OfAWindowIsThatOfItsScreenBeforeItIsShown) {
    const qt::QtPlatform platform;
    QWindow window;
    const auto recorded = platform.windowOf(window);
    EXPECT_EQ(recorded->screenScale(), 2);
    window.show();
    runFor(0.01);
    EXPECT_EQ(recorded->screenScale(), 2);
}

}  // namespace

}  // namespace mireth::qttest
