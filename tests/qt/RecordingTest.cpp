// Windows of a Qt application, recorded by the whole library and delivered to a real receiver.
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "endtoend/support/Video.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/QmlScene.hpp"
#include "qt/support/RecordedSession.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Rgb;
using platform::Image;

constexpr Rgb maskColor{188, 188, 188};

class EndToEndQt : public RecordedSession {};

bool isColored(Rgb color) {
    return endtoend::saturation(color) > 24;
}

TEST_F(EndToEndQt, AWindowOfWidgetsArrivesUprightAndMaskedWithItsTap) {
    QWidget window;
    window.setPalette(QPalette(QColor(200, 200, 200), QColor(240, 240, 240)));
    window.resize(250, 500);
    QWidget top(&window);
    top.setGeometry(0, 0, 250, 60);
    top.setAutoFillBackground(true);
    top.setPalette(QPalette(QColor(40, 40, 40)));
    QLabel label("Secret", &window);
    label.setStyleSheet("background: red; color: lime");
    label.setGeometry(20, 100, 100, 40);
    QPushButton button("Secret", &window);
    button.setStyleSheet("background: blue");
    button.setGeometry(20, 200, 100, 40);
    // Else it would be a dead tap, found to be one when the recording is over.
    QObject::connect(&button, &QPushButton::clicked, [&button] { button.setText("Another"); });
    window.show();

    start(platform_.windowOf(window));
    runFor(0.8);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 220));
    runFor(0.8);
    stop();

    const auto seen = frames();
    ASSERT_GE(seen.size(), 2U);
    for (const Image& frame : seen) {
        EXPECT_EQ(frame.pixelWidth(), 250U);
        EXPECT_EQ(frame.pixelHeight(), 500U);
        EXPECT_EQ(endtoend::findPixel(frame, isColored), std::nullopt);
        EXPECT_LT(at(frame, 125, 20).red, 60) << "the dark panel is at the top";
        EXPECT_GT(at(frame, 125, 400).red, 225);
        EXPECT_LE(endtoend::distance(at(frame, 70, 120), maskColor), 8) << "the label";
        EXPECT_LE(endtoend::distance(at(frame, 70, 220), maskColor), 8) << "the button";
    }
    expectTapAt(0.2, 0.44);
}

TEST_F(EndToEndQt, AWindowOfItemsArrivesUprightAndMaskedWithItsTap) {
    QmlScene scene(
        "Rectangle { width: 250; height: 60; color: '#282828' }"
        "Text { x: 20; y: 100; width: 100; height: 40; text: 'Secret'; color: 'red' }"
        "Button { x: 20; y: 200; width: 100; height: 40; text: 'Secret'; palette.buttonText: 'lime';"
        " onClicked: text = 'Another' }");
    scene.window().resize(250, 500);
    start(platform_.windowOf(scene.window()));
    runFor(0.8);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, QPoint(50, 220));
    runFor(0.8);
    stop();
    expectTapAt(0.2, 0.44);
    const auto seen = frames();
    ASSERT_GE(seen.size(), 2U);
    for (const Image& frame : seen) {
        EXPECT_EQ(frame.pixelWidth(), 250U);
        EXPECT_EQ(frame.pixelHeight(), 500U);
        EXPECT_EQ(endtoend::findPixel(frame, isColored), std::nullopt);
        EXPECT_LT(at(frame, 125, 20).red, 60) << "the dark panel is at the top";
        EXPECT_GT(at(frame, 125, 400).red, 225);
        EXPECT_LE(endtoend::distance(at(frame, 70, 120), maskColor), 8) << "the text";
    }
}

TEST_F(EndToEndQt, WithMaskingDisabledAWindowArrivesAsItIs) {
    QWidget window;
    window.resize(250, 500);
    QLabel label("Shown", &window);
    label.setStyleSheet("background: red");
    label.setGeometry(20, 100, 100, 40);
    window.show();
    VexConfiguration configuration;
    configuration.disableMasking = true;
    start(platform_.windowOf(window), configuration);
    runFor(1.2);
    stop();
    const auto seen = frames();
    ASSERT_GE(seen.size(), 1U);
    for (const Image& frame : seen) {
        EXPECT_LE(endtoend::distance(at(frame, 110, 105), Rgb{255, 0, 0}), 24);
        EXPECT_GT(at(frame, 125, 400).green, 225);
    }
}

TEST_F(EndToEndQt, TheRecordedWindowMayCloseWhileTheSessionRuns) {
    auto window = std::make_unique<QWidget>();
    window->resize(250, 500);
    window->show();
    start(platform_.windowOf(*window));
    runFor(0.6);
    window.reset();
    runFor(0.6);
    stop();
    EXPECT_GE(frames().size(), 2U);
}

}  // namespace

}  // namespace mireth::qttest
