// What an on-screen keyboard of the app's tells: neither what is pressed on it nor how its keys look.
#include <gtest/gtest.h>

#include <QPushButton>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QStackedWidget>
#include <QTest>
#include <memory>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "contract/services/TestSupport.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

// The module's own windows go by such names.
namespace QtVirtualKeyboard {

class InputView : public QQuickWindow {
    Q_OBJECT
};

}  // namespace QtVirtualKeyboard

namespace mireth::qttest {

namespace {

class TouchCount final : public platform::GestureRecognizer {
  public:
    void touchesBegan(const std::vector<platform::Touch>& /*touches*/,
                      const platform::TouchEvent& /*event*/) override {
        ++began;
    }
    void touchesEnded(const std::vector<platform::Touch>& /*touches*/,
                      const platform::TouchEvent& /*event*/) override {
        ++ended;
    }
    int began = 0;
    int ended = 0;
};

constexpr const char* panel = "InputPanel { objectName: 'panel'; y: 50; width: 200; height: 50 }";

class QtScreenKeyboard : public testing::Test {
  protected:
    QtScreenKeyboard() {
        // The keys are red, and suggestions stand above the panel.
        for (const char* const name : {"InputPanel.qml", "HandwritingInputPanel.qml"}) {
            test::writeFile(folder_ / name,
                            "import QtQuick\nItem { Rectangle { anchors.fill: parent; color: 'red' }"
                            " Rectangle { y: -20; width: 50; height: 20; color: 'red' } }");
        }
    }
    QUrl scene() const {
        return QUrl::fromLocalFile(QString::fromStdString((folder_ / "Scene.qml").native()));
    }
    /// Holds a keyboard as its lower half.
    QQuickWidget* keyboardIn(QWidget* parent) const {
        auto* const host = new QQuickWidget(parent);
        host->setResizeMode(QQuickWidget::SizeRootObjectToView);
        QQmlComponent component(host->engine());
        component.setData(QByteArray("import QtQuick\nItem { ") + panel + " }", scene());
        host->setContent({}, &component, component.create());
        return host;
    }
    std::shared_ptr<platform::Window> watch(QWindow& window) {
        auto recorded = platform_.windowOf(window);
        recorded->addGestureRecognizer(touches_);
        return recorded;
    }
    static void press(QWindow& window, QPoint place) {
        QTest::mouseClick(&window, Qt::LeftButton, {}, place);
    }

    const test::TemporaryDirectory folder_;
    const qt::QtPlatform platform_;
    const std::shared_ptr<TouchCount> touches_ = std::make_shared<TouchCount>();
};

TEST_F(QtScreenKeyboard, WhatIsPressedOnItIsNotTold) {
    QmlScene scene(panel, this->scene());
    const auto recorded = watch(scene.window());
    press(scene.window(), {100, 75});
    press(scene.window(), {20, 40});
    EXPECT_EQ(touches_->began, 0);
    EXPECT_EQ(touches_->ended, 0);
    press(scene.window(), {100, 40});
    EXPECT_EQ(touches_->ended, 1) << "beside it";
    scene.object("panel").setProperty("visible", false);
    press(scene.window(), {100, 75});
    EXPECT_EQ(touches_->ended, 2) << "it is gone";
}

TEST_F(QtScreenKeyboard, HandwritingIsNotToldNorShown) {
    QmlScene scene("HandwritingInputPanel { objectName: 'panel'; anchors.fill: parent }", this->scene());
    const auto recorded = watch(scene.window());
    press(scene.window(), {100, 75});
    EXPECT_EQ(touches_->began, 0);
    EXPECT_EQ(findCanary(recordedPicture(*recorded)), std::nullopt);
    EXPECT_EQ(findCanary(unmaskedPicture(*recorded)), std::nullopt);
    scene.object("panel").setProperty("enabled", false);
    press(scene.window(), {100, 75});
    EXPECT_EQ(touches_->ended, 1) << "it lets presses through";
}

TEST_F(QtScreenKeyboard, AFingerOnItIsNotTold) {
    QmlScene scene(panel, this->scene());
    const auto recorded = watch(scene.window());
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(&scene.window(), screen.get()).press(0, QPoint(100, 75));
    QTest::touchEvent(&scene.window(), screen.get()).release(0, QPoint(100, 75));
    EXPECT_EQ(touches_->began, 0);
}

TEST_F(QtScreenKeyboard, IsABlockWithMaskingAndWithout) {
    QmlScene scene(panel, this->scene());
    const auto recorded = platform_.windowOf(scene.window());
    EXPECT_TRUE(isMaskBlock(recordedPicture(*recorded).pixel(100, 75)));
    EXPECT_EQ(findCanary(recordedPicture(*recorded)), std::nullopt);
    EXPECT_EQ(findCanary(unmaskedPicture(*recorded)), std::nullopt);
}

TEST_F(QtScreenKeyboard, InAWidgetItIsLeftOut) {
    QWidget window;
    window.resize(200, 200);
    keyboardIn(&window)->setGeometry(0, 100, 200, 100);
    window.show();
    runFor(0.02);
    const auto recorded = watch(*window.windowHandle());
    press(*window.windowHandle(), {100, 175});
    EXPECT_EQ(touches_->began, 0);
    press(*window.windowHandle(), {100, 120});
    EXPECT_EQ(touches_->began, 1);
}

TEST_F(QtScreenKeyboard, OnAPageThatIsNotShownItSwallowsNothing) {
    QStackedWidget window;
    window.resize(200, 100);
    window.addWidget(keyboardIn(&window));
    window.addWidget(new QPushButton("Buy"));
    window.show();
    window.setCurrentIndex(1);
    runFor(0.02);
    const auto recorded = watch(*window.windowHandle());
    press(*window.windowHandle(), {100, 75});
    EXPECT_EQ(touches_->ended, 1);
    window.setCurrentIndex(0);
    press(*window.windowHandle(), {100, 75});
    EXPECT_EQ(touches_->began, 1) << "it is shown now";
}

TEST_F(QtScreenKeyboard, BelowAnotherWidgetItSwallowsNothing) {
    QWidget window;
    window.resize(200, 100);
    keyboardIn(&window)->setGeometry(0, 0, 200, 100);
    QPushButton button("Buy", &window);
    button.setGeometry(0, 60, 100, 30);
    window.show();
    runFor(0.02);
    const auto recorded = watch(*window.windowHandle());
    press(*window.windowHandle(), {50, 75});
    EXPECT_EQ(touches_->ended, 1);
    press(*window.windowHandle(), {150, 75});
    EXPECT_EQ(touches_->began, 1) << "beside the button";
}

TEST_F(QtScreenKeyboard, InANativeWidgetItIsLeftOut) {
    QWidget window;
    window.resize(200, 200);
    auto* const pane = new QWidget(&window);
    pane->setGeometry(0, 100, 200, 100);
    pane->setAttribute(Qt::WA_DontCreateNativeAncestors);
    pane->setAttribute(Qt::WA_NativeWindow);
    keyboardIn(pane)->setGeometry(0, 0, 200, 100);
    window.show();
    runFor(0.02);
    const auto recorded = watch(*window.windowHandle());
    press(*pane->windowHandle(), {100, 75});
    EXPECT_EQ(touches_->began, 0);
    press(*pane->windowHandle(), {100, 20});
    EXPECT_EQ(touches_->began, 1);
}

TEST_F(QtScreenKeyboard, AWindowOfItsOwnIsLeftOut) {
    QmlScene scene("");
    const auto recorded = watch(scene.window());
    QtVirtualKeyboard::InputView keys;
    keys.setFlags(Qt::Tool);
    keys.setColor(Qt::red);
    keys.setGeometry(QRect(scene.window().mapToGlobal(QPoint(0, 50)), QSize(200, 50)));
    keys.show();
    runFor(0.05);
    press(keys, {20, 20});
    EXPECT_EQ(touches_->began, 0);
    EXPECT_EQ(findCanary(recordedPicture(*recorded)), std::nullopt);
    EXPECT_EQ(findCanary(unmaskedPicture(*recorded)), std::nullopt);
}

}  // namespace

}  // namespace mireth::qttest

#include "ScreenKeyboardTest.moc"
