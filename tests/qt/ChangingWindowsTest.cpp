// Windows that change their size, their shape or the screen while they are recorded, or go away.
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTest>
#include <QWidget>

#include "qt/support/QmlScene.hpp"
#include "qt/support/RecordedSession.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Json;
using endtoend::Rgb;
using platform::Image;

constexpr Rgb maskColor{188, 188, 188};

class EndToEndQtChanging : public RecordedSession {
  protected:
    EndToEndQtChanging() {
        window_.setPalette(QPalette(QColor(200, 200, 200), QColor(240, 240, 240)));
        window_.resize(250, 500);
        secret_.setStyleSheet("background: red; color: lime");
        secret_.setGeometry(20, 100, 100, 40);
        window_.show();
    }

    /// Until this many frames more are taken, and another one, since one may be taken at any moment.
    void awaitFrames(int count) { runFor((count + 1) * 0.5); }

    /// What was said of the window's size, in pixels, in order.
    std::vector<std::pair<int, int>> dimensions() const {
        std::vector<std::pair<int, int>> found;
        const Json whole = report();
        for (const Json& event : whole.at("timeline")) {
            if (event.at("type") == "WindowDimensions") {
                const Json& details = event.at("eventDetails");
                found.emplace_back(details.at("windowWidthPx"), details.at("windowHeightPx"));
            }
        }
        return found;
    }

    static std::pair<int, int> pixels(int width, int height, double scale) {
        return {static_cast<int>(width * scale), static_cast<int>(height * scale)};
    }

    void expectNoCanary(const std::vector<Image>& seen) const {
        for (const Image& frame : seen) {
            EXPECT_EQ(endtoend::findPixel(frame, [](Rgb color) { return saturation(color) > 24; }),
                      std::nullopt);
        }
    }

    QWidget window_;
    QLabel secret_{"Secret", &window_};
};

TEST_F(EndToEndQtChanging, AWindowThatIsTurnedIsFittedIntoTheFrameAnew) {
    start(platform_.windowOf(window_));
    awaitFrames(1);
    window_.resize(500, 250);
    awaitFrames(1);
    QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, QPoint(100, 50));
    runFor(0.1);
    stop();
    const double scale = window_.devicePixelRatio();
    EXPECT_EQ(dimensions(), (std::vector{pixels(250, 500, scale), pixels(500, 250, scale)}));
    const auto seen = frames();
    expectNoCanary(seen);
    ASSERT_GE(seen.size(), 2U);
    EXPECT_LE(endtoend::distance(at(seen.front(), 70, 120), maskColor), 8);
    // Half as large, and in the middle: 125 pixels high.
    EXPECT_LE(endtoend::distance(at(seen.back(), 35, 187 + 60), maskColor), 8);
    EXPECT_GT(at(seen.back(), 125, 187 + 30).red, 225);
    EXPECT_LT(at(seen.back(), 125, 170).red, 60) << "above the window";
    expectTapAt(50 / 250.0, (187.5 + 25) / 500);
}

TEST_F(EndToEndQtChanging, AWindowMayMoveToAScreenOfAnotherScale) {
    ASSERT_EQ(QGuiApplication::screens().size(), 2);
    QScreen* const other = QGuiApplication::screens().back();
    const double before = window_.devicePixelRatio();
    ASSERT_EQ(other->devicePixelRatio(), 2 * before);
    start(platform_.windowOf(window_));
    awaitFrames(1);
    window_.move(other->geometry().topLeft() + QPoint(40, 40));
    ASSERT_TRUE(runUntil([&] { return window_.devicePixelRatio() > before; }, 5));
    awaitFrames(1);
    QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, QPoint(50, 220));
    runFor(0.1);
    stop();
    // In pixels of the screen that it was initialised on.
    EXPECT_EQ(dimensions(), (std::vector{pixels(250, 500, before)}));
    const auto seen = frames();
    expectNoCanary(seen);
    for (const Image& frame : seen) {
        EXPECT_LE(endtoend::distance(at(frame, 70, 120), maskColor), 8);
        EXPECT_GT(at(frame, 125, 400).red, 225);
    }
    expectTapAt(0.2, 0.44);
}

TEST_F(EndToEndQtChanging, AWindowOfItemsMayMoveToAScreenOfAnotherScale) {
    QScreen* const other = QGuiApplication::screens().back();
    QmlScene scene(
        "Rectangle { width: 250; height: 60; color: '#282828' }"
        "Text { x: 20; y: 100; width: 100; height: 40; text: 'Secret'; color: 'red' }");
    scene.window().resize(250, 500);
    const double before = scene.window().devicePixelRatio();
    start(platform_.windowOf(scene.window()));
    awaitFrames(1);
    scene.window().setPosition(other->geometry().topLeft() + QPoint(40, 40));
    ASSERT_TRUE(runUntil([&] { return scene.window().devicePixelRatio() > before; }, 5));
    awaitFrames(1);
    stop();
    // In pixels of the screen that it was initialised on.
    EXPECT_EQ(dimensions(), (std::vector{pixels(250, 500, before)}));
    const auto seen = frames();
    expectNoCanary(seen);
    for (const Image& frame : seen) {
        EXPECT_LT(at(frame, 125, 20).red, 60);
        EXPECT_LE(endtoend::distance(at(frame, 70, 120), maskColor), 8);
    }
}

TEST_F(EndToEndQtChanging, WhenTheRecordedWindowIsGoneAnotherOneIsNotTakenInItsPlace) {
    auto recorded = std::make_unique<QWidget>();
    recorded->setPalette(QPalette(QColor(40, 40, 40)));
    recorded->resize(250, 500);
    recorded->show();
    start(platform_.windowOf(*recorded));
    awaitFrames(1);
    recorded.reset();
    awaitFrames(1);
    QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, QPoint(50, 220));
    runFor(0.6);
    stop();
    const auto seen = frames();
    ASSERT_GE(seen.size(), 3U);
    expectNoCanary(seen);
    const Image& last = seen.back();
    for (std::size_t y = 0; y < last.pixelHeight(); ++y) {
        ASSERT_EQ(endtoend::distance(at(last, 70, y), at(last, 70, 0)) <= 8, true)
            << "something is seen at " << y;
    }
    const Json whole = report();
    for (const Json& event : whole.at("timeline")) {
        EXPECT_NE(event.at("type"), "UserInteraction");
    }
}

}  // namespace

}  // namespace mireth::qttest
