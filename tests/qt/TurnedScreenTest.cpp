// A screen that is turned while a window that fills it is recorded.
#include <QGuiApplication>
#include <QScreen>

#include "endtoend/support/Process.hpp"
#include "qt/support/QmlScene.hpp"
#include "qt/support/RecordedSession.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Rgb;

class EndToEndQtTurnedScreen : public RecordedSession {
  protected:
    EndToEndQtTurnedScreen() {
        addMode("tall", {"450", "460", "470", "480", "900", "901", "904", "920"});
        addMode("wide", {"900", "910", "920", "930", "450", "451", "454", "470"});
    }

    ~EndToEndQtTurnedScreen() override { xrandr({"--output", "screen", "--preferred"}); }

    static void turn(const std::string& mode) { xrandr({"--output", "screen", "--mode", mode}); }

    static bool isScreen(int width, int height) {
        return QGuiApplication::primaryScreen()->size() == QSize(width, height);
    }

  private:
    static void addMode(const std::string& name, std::vector<std::string> timing) {
        timing.insert(timing.begin(), {"--newmode", name, "31.5"});
        xrandr(std::move(timing));
        xrandr({"--addmode", "screen", name});
    }

    static void xrandr(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xrandr");
        const auto ended = endtoend::runProcess(std::move(arguments));
        EXPECT_EQ(ended.status, 0) << ended.errors;
    }
};

TEST_F(EndToEndQtTurnedScreen, AWindowThatFillsItIsFittedIntoTheFrameAnew) {
    turn("tall");
    ASSERT_TRUE(runUntil([] { return isScreen(450, 900); }));
    QmlScene scene(
        "Rectangle { width: parent.width; height: 108; color: '#282828' }"
        "Text { x: 18; y: 180; width: 180; height: 72; text: 'Secret'; color: 'red' }");
    auto& window = scene.window();
    QScreen* const screen = QGuiApplication::primaryScreen();
    window.setGeometry(screen->geometry());
    QObject::connect(screen, &QScreen::geometryChanged, &window,
                     [&window](const QRect& geometry) { window.setGeometry(geometry); });
    start(platform_.windowOf(window));
    runFor(1);
    turn("wide");
    ASSERT_TRUE(runUntil([&] { return isScreen(900, 450) && window.size() == QSize(900, 450); }));
    runFor(1);
    stop();
    const auto seen = frames();
    ASSERT_GE(seen.size(), 2U);
    for (const auto& frame : seen) {
        EXPECT_EQ(endtoend::findPixel(frame, [](Rgb color) { return saturation(color) > 24; }), std::nullopt);
    }
    constexpr Rgb maskColor{188, 188, 188};
    EXPECT_LT(at(seen.front(), 125, 30).red, 60);
    EXPECT_LE(endtoend::distance(at(seen.front(), 60, 120), maskColor), 8);
    EXPECT_GT(at(seen.front(), 125, 400).red, 225);
    // 125 pixels high, in the middle.
    EXPECT_LT(at(seen.back(), 240, 187 + 15).red, 60);
    EXPECT_LE(endtoend::distance(at(seen.back(), 30, 187 + 60), maskColor), 8);
    EXPECT_GT(at(seen.back(), 240, 187 + 100).red, 225);
}

}  // namespace

}  // namespace mireth::qttest
