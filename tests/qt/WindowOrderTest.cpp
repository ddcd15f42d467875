// What is kept of windows that come and go.
#include <gtest/gtest.h>

#include <QWidget>
#include <QWindow>
#include <memory>
#include <vector>

#include "platforms/qt/objects/WindowOrder.hpp"

namespace mireth::qttest {

namespace {

TEST(QtWindowOrder, KeepsNothingOfTheWindowsOfALongDay) {
    const qt::WindowOrder order;
    QWidget window;
    window.show();
    for (int i = 0; i < 1000; ++i) {
        QWidget tip(&window, Qt::ToolTip);
        tip.show();
        tip.close();
        QWindow other;
        other.show();
    }
    // Of the last turn, until another window comes.
    EXPECT_LE(order.size(), 3U);
}

TEST(QtWindowOrder, KeepsAWindowOnceHoweverOftenItComes) {
    const qt::WindowOrder order;
    QWindow first;
    QWindow second;
    for (int i = 0; i < 10; ++i) {
        first.show();
        second.show();
        first.hide();
        second.hide();
    }
    EXPECT_EQ(order.size(), 2U);
}

TEST(QtWindowOrder, AWindowComesToTheFrontWhenItIsShownAgain) {
    const qt::WindowOrder order;
    QWindow below;
    QWindow first;
    QWindow second;
    for (QWindow* const window : {&first, &second, &first}) {
        window->hide();
        window->show();
    }
    std::vector windows{qt::LiveWindow(first), qt::LiveWindow(second)};
    order.sort(windows, &below);
    EXPECT_EQ(windows.back().window(), &first);
}

}  // namespace

}  // namespace mireth::qttest
