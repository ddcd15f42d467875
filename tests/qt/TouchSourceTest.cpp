// Which touches a window of the app's hands on to the library.
#include <gtest/gtest.h>

#include <QDialog>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyleHints>
#include <QTest>
#include <QTouchEvent>
#include <memory>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

using platform::Touch;
using platform::TouchEvent;
using platform::TouchPhase;

/// Keeps every touch that it is told of, and takes none.
class Witness final : public platform::GestureRecognizer {
  public:
    void touchesBegan(const std::vector<Touch>& touches, const TouchEvent& /*event*/) override {
        add(touches);
    }
    void touchesMoved(const std::vector<Touch>& touches, const TouchEvent& /*event*/) override {
        add(touches);
    }
    void touchesEnded(const std::vector<Touch>& touches, const TouchEvent& /*event*/) override {
        add(touches);
    }
    void touchesCancelled(const std::vector<Touch>& touches, const TouchEvent& /*event*/) override {
        add(touches);
    }

    std::vector<TouchPhase> phases() const {
        std::vector<TouchPhase> phases;
        for (const Touch& touch : seen) {
            phases.push_back(touch.phase);
        }
        return phases;
    }

    std::vector<Touch> seen;

  private:
    void add(const std::vector<Touch>& touches) { seen.insert(seen.end(), touches.begin(), touches.end()); }
};

const std::vector<TouchPhase> tap{TouchPhase::began, TouchPhase::ended};

class QtTouchSource : public testing::Test {
  protected:
    QtTouchSource() {
        window_.setGeometry(100, 100, 200, 100);
        button_.setGeometry(0, 0, 100, 50);
        window_.show();
        runFor(0.01);
        recorded_ = platform_.windowOf(window_);
        recorded_->addGestureRecognizer(witness_);
    }

    QWindow* handle() { return window_.windowHandle(); }
    static void cancel(QWindow& window, const QPointingDevice& device) {
        QTouchEvent event(QEvent::TouchCancel, &device);
        QCoreApplication::sendEvent(&window, &event);
    }
    /// Later than any double click.
    static void pause() { QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50); }

    const qt::QtPlatform platform_;
    QWidget window_;
    QPushButton button_{"Buy", &window_};
    const std::shared_ptr<Witness> witness_ = std::make_shared<Witness>();
    std::shared_ptr<platform::Window> recorded_;
};

TEST_F(QtTouchSource, AClickIsATapAndReachesTheAppAllTheSame) {
    int clicks = 0;
    QObject::connect(&button_, &QPushButton::clicked, [&clicks] { ++clicks; });
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(clicks, 1);
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[1].locationInWindow, (Point{30, 20}));
    EXPECT_EQ(witness_->seen[1].tapCount, 1);
    EXPECT_EQ(witness_->seen[0].identity, witness_->seen[1].identity);
    EXPECT_EQ(witness_->seen[0].window.lock(), recorded_);
    EXPECT_NEAR(witness_->seen[1].timestamp, platform_.services().clock->uptimeSeconds(), 10);
}

TEST_F(QtTouchSource, IsToldBeforeTheAppReacts) {
    std::size_t seenAtTheClick = 0;
    QObject::connect(&button_, &QPushButton::clicked, [&] { seenAtTheClick = witness_->seen.size(); });
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(seenAtTheClick, 2U);
}

TEST_F(QtTouchSource, TapsInARowAreCountedByThePlatformsInterval) {
    for (int i = 0; i < 4; ++i) {
        QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    }
    ASSERT_EQ(witness_->seen.size(), 8U);
    EXPECT_EQ(witness_->seen.back().tapCount, 4);
    pause();
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(witness_->seen.back().tapCount, 1);
}

TEST_F(QtTouchSource, ATapFarFromTheLastOneBeginsANewRun) {
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(150, 80));
    EXPECT_EQ(witness_->seen.back().tapCount, 1);
}

TEST_F(QtTouchSource, OnlyTheLeftButtonTouches) {
    QTest::mouseClick(handle(), Qt::RightButton, {}, QPoint(30, 20));
    EXPECT_TRUE(witness_->seen.empty());
}

TEST_F(QtTouchSource, AMoveBeginsBeyondTheDragDistance) {
    const int distance = QGuiApplication::styleHints()->startDragDistance();
    QTest::mousePress(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    QTest::mouseMove(handle(), QPoint(30 + distance, 20));
    EXPECT_EQ(witness_->seen.size(), 1U);
    QTest::mouseMove(handle(), QPoint(30 + distance + 1, 20));
    QTest::mouseMove(handle(), QPoint(30, 20));
    QTest::mouseRelease(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(witness_->phases(),
              (std::vector{TouchPhase::began, TouchPhase::moved, TouchPhase::moved, TouchPhase::ended}));
}

TEST_F(QtTouchSource, AReleaseFarFromItsPressHasMovedWhoeverTookTheMoves) {
    QTest::mousePress(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    QTest::mouseRelease(handle(), Qt::LeftButton, {}, QPoint(90, 40));
    EXPECT_EQ(witness_->phases(), (std::vector{TouchPhase::began, TouchPhase::moved, TouchPhase::ended}));
    EXPECT_EQ(witness_->seen.back().locationInWindow, (Point{90, 40}));
}

TEST_F(QtTouchSource, AnUnpressedMouseMovesNothing) {
    QTest::mouseMove(handle(), QPoint(30, 20));
    QTest::mouseMove(handle(), QPoint(90, 40));
    EXPECT_TRUE(witness_->seen.empty());
}

TEST_F(QtTouchSource, FingersAreToldApart) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(handle(), screen.get()).press(0, QPoint(120, 60)).press(1, QPoint(150, 60));
    QTest::touchEvent(handle(), screen.get()).release(0, QPoint(120, 60)).move(1, QPoint(190, 90));
    QTest::touchEvent(handle(), screen.get()).release(1, QPoint(190, 90));
    const auto& seen = witness_->seen;
    ASSERT_EQ(witness_->phases(), (std::vector{TouchPhase::began, TouchPhase::began, TouchPhase::moved,
                                               TouchPhase::ended, TouchPhase::ended}));
    EXPECT_NE(seen[0].identity, seen[1].identity);
    EXPECT_EQ(seen[2].identity, seen[1].identity);
    EXPECT_EQ(seen[3].identity, seen[0].identity);
    EXPECT_EQ(seen[4].locationInWindow, (Point{190, 90}));
}

TEST_F(QtTouchSource, ATouchIsNotCountedAgainAsTheMouseThatQtMakesOfIt) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(handle(), screen.get()).press(0, QPoint(30, 20));
    QTest::touchEvent(handle(), screen.get()).release(0, QPoint(30, 20));
    EXPECT_EQ(witness_->phases(), tap);
}

TEST_F(QtTouchSource, APressInADialogAboveCountsAtItsPlaceInTheWindow) {
    QDialog dialog(&window_);
    dialog.setGeometry(150, 120, 60, 50);
    dialog.show();
    runFor(0.01);
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[0].locationInWindow, (Point{55, 26}));
}

TEST_F(QtTouchSource, APressInADialogBesideTheWindowLiesOutsideOfIt) {
    QDialog dialog(&window_);
    dialog.setGeometry(20, 60, 60, 30);
    dialog.show();
    runFor(0.01);
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    dialog.setGeometry(320, 220, 60, 30);
    runFor(0.01);
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    ASSERT_EQ(witness_->seen.size(), 4U);
    EXPECT_EQ(witness_->seen[1].locationInWindow, (Point{-75, -34}));
    EXPECT_EQ(witness_->seen[3].locationInWindow, (Point{225, 126}));
}

TEST_F(QtTouchSource, APressInANativeWidgetCountsAtItsPlaceInTheWindow) {
    QWidget panel(&window_);
    panel.setGeometry(100, 50, 100, 50);
    QPushButton deep("Pay", &panel);
    deep.setGeometry(10, 20, 50, 20);
    panel.show();
    // Its parents become native with it.
    (void)deep.winId();
    runFor(0.01);
    QTest::mouseClick(deep.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[0].locationInWindow, (Point{115, 76}));
}

TEST_F(QtTouchSource, APressInAWindowThatAWidgetContainsCountsAtItsPlace) {
    auto* const contained = new QWindow;
    QWidget* const container = QWidget::createWindowContainer(contained, &window_);
    container->setGeometry(100, 50, 100, 50);
    container->show();
    runFor(0.01);
    QTest::mouseClick(contained, Qt::LeftButton, {}, QPoint(5, 6));
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[0].locationInWindow, (Point{105, 56}));
}

TEST_F(QtTouchSource, APressInANativeWidgetOfADialogCountsAtItsPlaceInTheWindow) {
    QDialog dialog(&window_);
    dialog.setGeometry(150, 120, 60, 50);
    QPushButton inside("Yes", &dialog);
    inside.setGeometry(10, 10, 40, 20);
    dialog.show();
    (void)inside.winId();
    runFor(0.01);
    QTest::mouseClick(inside.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[0].locationInWindow, (Point{65, 36}));
}

TEST_F(QtTouchSource, APressInAnotherWindowIsNoneOfOurs) {
    QWidget other;
    other.show();
    runFor(0.01);
    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(5, 6));
    EXPECT_TRUE(witness_->seen.empty());
}

TEST_F(QtTouchSource, WhatIsCancelledInAnotherWindowIsNoneOfOurs) {
    QWidget other;
    other.show();
    runFor(0.01);
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(handle(), screen.get()).press(0, QPoint(120, 60));
    cancel(*other.windowHandle(), *screen);
    QTest::touchEvent(handle(), screen.get()).release(0, QPoint(120, 60));
    EXPECT_EQ(witness_->phases(), tap);
}

TEST_F(QtTouchSource, ACancelIsForTheFingersOfItsDevice) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const std::unique_ptr<QPointingDevice> other(QTest::createTouchDevice());
    QTest::touchEvent(handle(), other.get()).press(1, QPoint(150, 80));
    QTest::touchEvent(handle(), screen.get()).press(0, QPoint(120, 60));
    cancel(*handle(), *screen);
    QTest::touchEvent(handle(), other.get()).release(1, QPoint(150, 80));
    ASSERT_EQ(witness_->phases(),
              (std::vector{TouchPhase::began, TouchPhase::began, TouchPhase::cancelled, TouchPhase::ended}));
    EXPECT_EQ(witness_->seen[2].identity, witness_->seen[1].identity);
    EXPECT_EQ(witness_->seen[3].identity, witness_->seen[0].identity);
}

TEST_F(QtTouchSource, ARecordingMayEndInTheMiddleOfATouch) {
    QTest::mousePress(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    recorded_->removeGestureRecognizer(witness_);
    recorded_.reset();
    QTest::mouseRelease(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(witness_->phases(), (std::vector{TouchPhase::began, TouchPhase::cancelled}));
}

TEST_F(QtTouchSource, APressWhoseReleaseWasLostIsCancelledByTheNext) {
    for (const QPointF place : {QPointF(30, 20), QPointF(130, 70)}) {
        QMouseEvent press(QEvent::MouseButtonPress, place, handle()->mapToGlobal(place), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(handle(), &press);
    }
    QTest::mouseRelease(handle(), Qt::LeftButton, {}, QPoint(130, 70));
    const auto phases = witness_->phases();
    ASSERT_GE(phases.size(), 4U);
    EXPECT_EQ(phases.front(), TouchPhase::began);
    EXPECT_EQ(std::vector(phases.end() - 3, phases.end()),
              (std::vector{TouchPhase::cancelled, TouchPhase::began, TouchPhase::ended}));
    EXPECT_NE(witness_->seen.front().identity, witness_->seen.back().identity);
}

/// A filter of the app's that takes every press.
class Lock final : public QObject {
  public:
    Lock() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        return event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease;
    }
};

TEST_F(QtTouchSource, AFilterThatTheAppInstalledLaterDoesNotHideAPressAfterTheNextFrame) {
    const Lock lock;
    (void)recordedPicture(*recorded_);
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(witness_->phases(), tap);
}

TEST_F(QtTouchSource, NorAfterTheNextFrameWithoutMasking) {
    const Lock lock;
    (void)unmaskedPicture(*recorded_);
    QTest::mouseClick(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(witness_->phases(), tap);
}

TEST_F(QtTouchSource, AReleaseThatIsLostIsMadeUpForByTheNextMove) {
    QTest::mousePress(handle(), Qt::LeftButton, {}, QPoint(30, 20));
    QMouseEvent move(QEvent::MouseMove, QPointF(90, 40), handle()->mapToGlobal(QPointF(90, 40)), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(handle(), &move);
    ASSERT_EQ(witness_->phases(), tap);
    EXPECT_EQ(witness_->seen[1].locationInWindow, (Point{30, 20}));
    QTest::mouseRelease(handle(), Qt::LeftButton, {}, QPoint(90, 40));
    EXPECT_EQ(witness_->phases(), tap);
}

TEST_F(QtTouchSource, FingersOnATouchPadAreNone) {
    const std::unique_ptr<QPointingDevice> pad(QTest::createTouchDevice(QInputDevice::DeviceType::TouchPad));
    QTest::touchEvent(handle(), pad.get()).press(0, QPoint(120, 60));
    QTest::touchEvent(handle(), pad.get()).release(0, QPoint(120, 60));
    EXPECT_TRUE(witness_->seen.empty());
}

TEST_F(QtTouchSource, TheClickOfATouchPadIsATap) {
    const std::unique_ptr<QPointingDevice> pad(QTest::createTouchDevice(QInputDevice::DeviceType::TouchPad));
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool isDown = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, QPointF(30, 20), handle()->mapToGlobal(QPointF(30, 20)), Qt::LeftButton,
                          isDown ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier, pad.get());
        QCoreApplication::sendEvent(handle(), &event);
    }
    EXPECT_EQ(witness_->phases(), tap);
}

/// Takes the window away as soon as it hears of a touch.
class Remover final : public platform::GestureRecognizer {
  public:
    explicit Remover(std::unique_ptr<QWindow> window) : window_(std::move(window)) {}
    void touchesEnded(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) override {
        window_.reset();
    }
    bool isDone() const { return window_ == nullptr; }

  private:
    std::unique_ptr<QWindow> window_;
};

/// One of the app's that comes after ours.
class ReleaseCount final : public QObject {
  public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        count += event->type() == QEvent::MouseButtonRelease ? 1 : 0;
        return false;
    }
    int count = 0;
};

TEST_F(QtTouchSource, NobodyIsAskedAboutAWindowThatWentWhenItsTouchWasTold) {
    auto owned = std::make_unique<QWindow>();
    QWindow& other = *owned;
    other.resize(100, 100);
    other.show();
    runFor(0.01);
    ReleaseCount later;
    QCoreApplication::instance()->installEventFilter(&later);
    const auto recorded = platform_.windowOf(other);
    const auto remover = std::make_shared<Remover>(std::move(owned));
    recorded->addGestureRecognizer(remover);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(30, 20), QPointF(30, 20), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&other, &event);
    }
    EXPECT_TRUE(remover->isDone());
    EXPECT_EQ(later.count, 0);
}

/// Lets go of the recorded window when it hears that a touch was lost.
class LetsGo final : public platform::GestureRecognizer {
  public:
    explicit LetsGo(std::shared_ptr<platform::Window> window) : window_(std::move(window)) {}
    void touchesBegan(const std::vector<Touch>& touches, const TouchEvent& /*event*/) override {
        for (const Touch& touch : touches) {
            begunIn.push_back(touch.window.lock().get());
        }
    }
    void touchesCancelled(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) override {
        window_.reset();
    }

    /// Only to be compared.
    std::vector<const platform::Window*> begunIn;

  private:
    std::shared_ptr<platform::Window> window_;
};

TEST_F(QtTouchSource, AWindowThatIsLetGoOfWhenATouchIsLostLastsUntilItsEventIsTold) {
    recorded_->removeGestureRecognizer(witness_);
    const platform::Window* const window = recorded_.get();
    const auto letsGo = std::make_shared<LetsGo>(std::move(recorded_));
    platform_.windowOf(window_)->addGestureRecognizer(letsGo);
    // The press whose release was lost, that which takes the window away, and one in a window that is gone.
    for (int i = 0; i < 3; ++i) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(30, 20), handle()->mapToGlobal(QPointF(30, 20)),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(handle(), &press);
    }
    EXPECT_EQ(letsGo->begunIn, (std::vector{window, window}));
}

}  // namespace

}  // namespace mireth::qttest
