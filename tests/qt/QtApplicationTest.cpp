// When a Qt application has moved to the background, and which window is the key window.
#include <gtest/gtest.h>

#include <QDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QWidget>
#include <QWindow>
#include <stdexcept>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"

namespace mireth::qttest {

namespace {

class QtApplicationState : public testing::Test {
  protected:
    /// What the platform plugin does.
    static void becomes(Qt::ApplicationState state) { Q_EMIT qGuiApp->applicationStateChanged(state); }

    const qt::QtPlatform platform_;
    int moves_ = 0;
    AnyCancellable token_ = platform_.services().application->observeDidEnterBackground([this] { ++moves_; });
};

TEST_F(QtApplicationState, SuspendedAndHiddenAreTheBackground) {
    becomes(Qt::ApplicationSuspended);
    EXPECT_EQ(moves_, 1);
    becomes(Qt::ApplicationActive);
    becomes(Qt::ApplicationHidden);
    EXPECT_EQ(moves_, 2);
}

TEST_F(QtApplicationState, BeingInactiveIsNot) {
    becomes(Qt::ApplicationInactive);
    becomes(Qt::ApplicationActive);
    EXPECT_EQ(moves_, 0);
}

TEST_F(QtApplicationState, OneMoveIsToldOnce) {
    becomes(Qt::ApplicationHidden);
    becomes(Qt::ApplicationSuspended);
    EXPECT_EQ(moves_, 1);
}

TEST_F(QtApplicationState, AfterTheTokenNothingIsTold) {
    token_.cancel();
    becomes(Qt::ApplicationHidden);
    EXPECT_EQ(moves_, 0);
}

TEST_F(QtApplicationState, AnObserverThatThrowsKeepsNoOtherFromHearing) {
    const auto first = platform_.services().application->observeDidEnterBackground(
        [] { throw std::runtime_error("observer"); });
    int heard = 0;
    const auto second = platform_.services().application->observeDidEnterBackground([&] { ++heard; });
    testing::internal::CaptureStderr();
    becomes(Qt::ApplicationHidden);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("observer"), std::string::npos);
    EXPECT_EQ(heard, 1);
}

TEST(QtKeyWindow, IsTheFocusedWindow) {
    const qt::QtPlatform platform;
    QWidget other;
    other.show();
    QWidget window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == window.windowHandle(); }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(window));
}

TEST(QtKeyWindow, IsTheOneThatAFocusedMenuOrDialogBelongsTo) {
    const qt::QtPlatform platform;
    QWidget window;
    window.show();
    QDialog dialog(&window);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == dialog.windowHandle(); }));
    const auto keyWindow = [&platform] { return platform.services().application->keyWindow(); };
    EXPECT_EQ(keyWindow(), platform.windowOf(window));
    QMenu menu(&dialog);
    menu.addAction("Copy");
    menu.popup(QPoint(10, 10));
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == menu.windowHandle(); }));
    EXPECT_EQ(keyWindow(), platform.windowOf(window));
}

TEST(QtKeyWindow, IsTheOneThatHoldsAFocusedContainer) {
    const qt::QtPlatform platform;
    QWidget window;
    auto* const contained = new QWindow;
    QWidget::createWindowContainer(contained, &window)->setGeometry(0, 0, 50, 50);
    window.show();
    contained->requestActivate();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == contained; }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(window));
}

TEST(QtKeyWindow, IsAFocusedDialogThatBelongsToNoOther) {
    const qt::QtPlatform platform;
    QDialog dialog;
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == dialog.windowHandle(); }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(dialog));
}

TEST(QtKeyWindow, IsAFocusedDialogWhoseWindowIsNotThere) {
    const qt::QtPlatform platform;
    QWidget window;
    window.show();
    window.hide();
    QDialog dialog(&window);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == dialog.windowHandle(); }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(dialog));
}

TEST(QtKeyWindow, IsOneOfDialogsThatBelongToEachOtherInACircle) {
    const qt::QtPlatform platform;
    QDialog first;
    QDialog second;
    first.show();
    second.show();
    first.windowHandle()->setTransientParent(second.windowHandle());
    second.windowHandle()->setTransientParent(first.windowHandle());
    second.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == second.windowHandle(); }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(first));
}

TEST(QtKeyWindow, IsNeitherAToolTipNorASplashWhereThereIsAnother) {
    const qt::QtPlatform platform;
    QWidget toolTip(nullptr, Qt::ToolTip);
    toolTip.show();
    QWidget window;
    window.show();
    QWidget splash(nullptr, Qt::SplashScreen);
    splash.show();
    splash.activateWindow();
    ASSERT_TRUE(runUntil([&] { return QGuiApplication::focusWindow() == splash.windowHandle(); }));
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(window));
    window.hide();
    EXPECT_EQ(platform.services().application->keyWindow(), platform.windowOf(splash));
}

TEST(QtKeyWindow, IsMissingWhereNothingIsShown) {
    const qt::QtPlatform platform;
    EXPECT_EQ(platform.services().application->keyWindow(), nullptr);
}

}  // namespace

}  // namespace mireth::qttest
