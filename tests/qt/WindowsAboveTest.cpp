// The windows that stand above the recorded one: where, in which order, and how faint.
#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <memory>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

class QtWindowsAbove : public testing::Test {
  protected:
    QtWindowsAbove() {
        window_.setPalette(QPalette(QColor(240, 240, 240)));
        window_.setGeometry(100, 100, 200, 100);
        window_.show();
        recorded_ = platform_.windowOf(window_);
    }

    /// Of one grey, over the upper left corner of the window.
    static std::unique_ptr<QDialog> dialog(QWidget& parent, int grey) {
        auto made = std::make_unique<QDialog>(&parent);
        made->setPalette(QPalette(QColor(grey, grey, grey)));
        made->setGeometry(100, 100, 50, 50);
        return made;
    }
    static void show(QWidget& widget) {
        widget.show();
        runFor(0.01);
    }
    int greyAtTheCorner() { return qRed(recordedPicture(*recorded_).pixel(20, 20)); }

    const qt::QtPlatform platform_;
    QWidget window_;
    std::shared_ptr<platform::Window> recorded_;
};

TEST_F(QtWindowsAbove, StandAtTheirPlaces) {
    QDialog dialog(&window_);
    dialog.setPalette(QPalette(QColor(100, 100, 100)));
    dialog.setGeometry(150, 120, 60, 50);
    show(dialog);
    const QImage seen = recordedPicture(*recorded_);
    EXPECT_EQ(seen.pixel(52, 22), qRgb(100, 100, 100));
    EXPECT_EQ(seen.pixel(108, 68), qRgb(100, 100, 100));
    EXPECT_EQ(seen.pixel(48, 22), qRgb(240, 240, 240));
}

TEST_F(QtWindowsAbove, ThoseOfAnotherWindowAreNotThere) {
    QWidget other;
    other.setGeometry(0, 0, 500, 500);
    const auto others = dialog(other, 100);
    other.show();
    show(*others);
    EXPECT_EQ(greyAtTheCorner(), 240);
}

TEST_F(QtWindowsAbove, ADialogOfNobodysIsThereUntilTheWindowComesInFrontOfIt) {
    QDialog dialog;
    dialog.setPalette(QPalette(QColor(100, 100, 100)));
    dialog.setGeometry(100, 100, 50, 50);
    show(dialog);
    EXPECT_EQ(greyAtTheCorner(), 100);
    window_.raise();
    EXPECT_EQ(greyAtTheCorner(), 240);
    dialog.raise();
    EXPECT_EQ(greyAtTheCorner(), 100);
}

TEST_F(QtWindowsAbove, ADialogStaysInFrontOfTheWindowItBelongsTo) {
    const auto held = dialog(window_, 100);
    show(*held);
    window_.raise();
    EXPECT_EQ(greyAtTheCorner(), 100);
}

TEST_F(QtWindowsAbove, TheLastShownIsInFrontWhicheverWasMadeFirst) {
    const auto first = dialog(window_, 10);
    const auto second = dialog(window_, 100);
    show(*first);
    first->hide();
    show(*second);
    EXPECT_EQ(greyAtTheCorner(), 100);
    show(*first);
    EXPECT_EQ(greyAtTheCorner(), 10);
}

TEST_F(QtWindowsAbove, TheLastFocusedOrRaisedIsInFront) {
    const auto first = dialog(window_, 10);
    const auto second = dialog(window_, 100);
    show(*first);
    show(*second);
    first->activateWindow();
    runFor(0.01);
    EXPECT_EQ(greyAtTheCorner(), 10);
    second->raise();
    EXPECT_EQ(greyAtTheCorner(), 100);
}

TEST_F(QtWindowsAbove, TheirOrderIsKnownFromBeforeTheWindowIsRecorded) {
    recorded_.reset();
    const auto first = dialog(window_, 10);
    const auto second = dialog(window_, 100);
    show(*second);
    show(*first);
    recorded_ = platform_.windowOf(window_);
    EXPECT_EQ(greyAtTheCorner(), 10);
}

TEST_F(QtWindowsAbove, ADialogStaysInFrontOfTheOneItBelongsTo) {
    const auto below = dialog(window_, 10);
    const auto question = dialog(*below, 100);
    show(*below);
    show(*question);
    below->raise();
    EXPECT_EQ(greyAtTheCorner(), 100);
}

TEST_F(QtWindowsAbove, ThoseThatBelongToEachOtherInACircleEndTheLook) {
    const auto first = dialog(window_, 10);
    const auto second = dialog(window_, 100);
    show(*first);
    show(*second);
    first->windowHandle()->setTransientParent(second->windowHandle());
    second->windowHandle()->setTransientParent(first->windowHandle());
    EXPECT_EQ(greyAtTheCorner(), 240);
}

TEST_F(QtWindowsAbove, AWindowInACircleHasTheOtherAboveIt) {
    const auto other = dialog(window_, 10);
    show(*other);
    window_.windowHandle()->setTransientParent(other->windowHandle());
    EXPECT_EQ(greyAtTheCorner(), 10);
}

TEST_F(QtWindowsAbove, APopUpIsInFrontOfDialogs) {
    const auto first = dialog(window_, 10);
    QMenu menu(&window_);
    menu.addAction("Copy");
    menu.setFixedSize(50, 50);
    show(*first);
    menu.popup(QPoint(100, 100));
    first->raise();
    EXPECT_TRUE(isMaskBlock(recordedPicture(*recorded_).pixel(20, 20)));
}

TEST_F(QtWindowsAbove, AreAsFaintAsTheirOpacityMakesThem) {
    const auto faint = dialog(window_, 0);
    faint->setWindowOpacity(0.25);
    show(*faint);
    EXPECT_NEAR(greyAtTheCorner(), 180, 3);
}

TEST_F(QtWindowsAbove, TranslucentOnesFillNothing) {
    const auto toast = dialog(window_, 0);
    toast->setAttribute(Qt::WA_TranslucentBackground);
    QLabel text("Saved", toast.get());
    text.setGeometry(0, 30, 50, 20);
    show(*toast);
    EXPECT_EQ(greyAtTheCorner(), 240);
    EXPECT_TRUE(isMaskBlock(recordedPicture(*recorded_).pixel(20, 40)));
    (void)unmaskedPicture(*recorded_);
    EXPECT_EQ(qRed(unmaskedPicture(*recorded_).pixel(20, 20)), 240);
}

TEST_F(QtWindowsAbove, MinimisedOnesAreNotThere) {
    const auto minimised = dialog(window_, 0);
    show(*minimised);
    ASSERT_EQ(greyAtTheCorner(), 0);
    minimised->showMinimized();
    runFor(0.01);
    EXPECT_EQ(greyAtTheCorner(), 240);
    minimised->showNormal();
    runFor(0.01);
    EXPECT_EQ(greyAtTheCorner(), 0);
}

TEST_F(QtWindowsAbove, ThoseOfItemsAreAsFaintAsTheirOpacityMakesThem) {
    QmlScene scene(
        "Window { objectName: 'above'; visible: true; flags: Qt.Dialog; width: 50; height: 50; color: "
        "'black';"
        " opacity: 0.25 }");
    auto& above = *qobject_cast<QQuickWindow*>(&scene.object("above"));
    above.setPosition(scene.window().position());
    runFor(0.01);
    EXPECT_NEAR(qRed(recordedPicture(*platform_.windowOf(scene.window())).pixel(20, 20)), 180, 3);
}

TEST_F(QtWindowsAbove, ThoseWhoseItemsAreTurnedAsAWholeStandAtTheirPlaces) {
    QmlScene scene(
        "Window { objectName: 'above'; visible: true; flags: Qt.Dialog; width: 60; height: 40; color: "
        "'white';"
        " contentItem.rotation: 90; Rectangle { width: 60; height: 10; color: 'black' } }");
    auto& above = *qobject_cast<QQuickWindow*>(&scene.object("above"));
    above.setPosition(scene.window().position() + QPoint(100, 30));
    runFor(0.01);
    const QImage seen = recordedPicture(*platform_.windowOf(scene.window()));
    // It fills its 60 × 40 points with white; of the bar, turned about the middle, 40 are inside of it.
    EXPECT_EQ(qRed(seen.pixel(103, 33)), 255);
    EXPECT_EQ(qRed(seen.pixel(157, 67)), 255);
    EXPECT_EQ(qRed(seen.pixel(145, 33)), 0);
    EXPECT_EQ(qRed(seen.pixel(145, 67)), 0);
    EXPECT_EQ(qRed(seen.pixel(145, 27)), 240);
    EXPECT_EQ(qRed(seen.pixel(145, 73)), 240);
    EXPECT_EQ(qRed(seen.pixel(97, 50)), 240);
}

TEST_F(QtWindowsAbove, NothingOfThemIsOutsideOfThem) {
    QmlScene scene(
        "Window { objectName: 'above'; visible: true; flags: Qt.Dialog; width: 60; height: 40; color: "
        "'white';"
        " Rectangle { x: 30; width: 60; height: 10; color: 'black' } }");
    auto& above = *qobject_cast<QQuickWindow*>(&scene.object("above"));
    above.setPosition(scene.window().position());
    runFor(0.01);
    const QImage seen = recordedPicture(*platform_.windowOf(scene.window()));
    EXPECT_EQ(qRed(seen.pixel(57, 5)), 0);
    EXPECT_EQ(qRed(seen.pixel(63, 5)), 240);
}

}  // namespace

}  // namespace mireth::qttest
