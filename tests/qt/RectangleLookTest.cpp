// Rectangles look in the mirror as the window shows them.
#include <gtest/gtest.h>

#include <QColor>
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

class QtRectangles : public testing::Test {
  protected:
    void expectAsShown(const std::string& body) {
        QmlScene scene(body);
        const QImage shown = scene.window().grabWindow();
        const QImage seen = recordedPicture(*platform_.windowOf(scene.window()));
        ASSERT_EQ(seen.size(), shown.size());
        EXPECT_EQ(firstThatDiffers(seen, shown), std::nullopt) << body;
    }

  private:
    static std::optional<std::string> firstThatDiffers(const QImage& seen, const QImage& shown) {
        for (int y = 1; y < seen.height() - 1; ++y) {
            for (int x = 1; x < seen.width() - 1; ++x) {
                if (!liesAmong(seen.pixel(x, y), shown.copy(x - 1, y - 1, 3, 3))) {
                    return std::to_string(x) + ", " + std::to_string(y) + ": " +
                           QColor(seen.pixel(x, y)).name().toStdString() + " instead of " +
                           QColor(shown.pixel(x, y)).name().toStdString();
                }
            }
        }
        return std::nullopt;
    }

    static std::array<int, 3> channelsOf(QRgb pixel) { return {qRed(pixel), qGreen(pixel), qBlue(pixel)}; }

    /// Edges are smoothed in more than one way: a pixel may be any mixture of those around it.
    static bool liesAmong(QRgb pixel, const QImage& around) {
        constexpr int slack = 80;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            int least = 255;
            int most = 0;
            for (int y = 0; y < around.height(); ++y) {
                for (int x = 0; x < around.width(); ++x) {
                    const int value = channelsOf(around.pixel(x, y)).at(channel);
                    least = std::min(least, value);
                    most = std::max(most, value);
                }
            }
            const int value = channelsOf(pixel).at(channel);
            if (value < least - slack || value > most + slack) {
                return false;
            }
        }
        return true;
    }

    const qt::QtPlatform platform_;
};

const std::string redToBlue =
    "gradient: Gradient {"
    " GradientStop { position: 0; color: 'red' } GradientStop { position: 1; color: 'blue' } } ";

TEST_F(QtRectangles, ABorderLiesBelowTheChildren) {
    expectAsShown(
        "Rectangle { width: 100; height: 80; radius: 20; color: 'red'; border { width: 8; color: 'blue' }"
        " Rectangle { x: 70; y: 20; width: 60; height: 40; color: 'green' } }");
    expectAsShown(
        "Rectangle { width: 100; height: 80; color: 'red'; border { width: 8; color: 'blue' } opacity: 0.5;"
        " Rectangle { z: -1; x: 70; y: 20; width: 60; height: 40; color: 'green' } }");
}

TEST_F(QtRectangles, AGradientEndsAtTheRoundCornersWhateverLiesOnIt) {
    expectAsShown("Rectangle { width: 100; height: 80; radius: 30; " + redToBlue + " }");
    expectAsShown("Rectangle { width: 100; height: 80; radius: 30; " + redToBlue +
                  "Rectangle { x: 10; y: 10; width: 110; height: 10; color: 'white' } }");
}

TEST_F(QtRectangles, AClipIsTheRectangleWithoutItsRoundCorners) {
    expectAsShown(
        "Rectangle { width: 100; height: 80; radius: 40; clip: true; color: 'red';"
        " Rectangle { width: 40; height: 90; color: 'blue' } }");
}

TEST_F(QtRectangles, AGradientThatQtHasReadyRunsAsItDoesThere) {
    for (const char* const preset : {"Gradient.NightFade", "Gradient.WarmFlame", "Gradient.SunnyMorning",
                                     "Gradient.RareWind", "'NightFade'"}) {
        expectAsShown("Rectangle { width: 100; height: 80; gradient: " + std::string(preset) + " }");
    }
}

TEST_F(QtRectangles, AGradientWithoutStopsIsThePlainColour) {
    expectAsShown("Rectangle { width: 100; height: 80; color: 'red'; gradient: Gradient {} }");
}

TEST_F(QtRectangles, ATranslucentBorderShowsWhatLiesBehind) {
    expectAsShown(
        "Rectangle { width: 100; height: 80; radius: 10; color: 'red';"
        " border { width: 10; color: '#800000ff' } }");
    expectAsShown("Rectangle { width: 100; height: 80; border { width: 10; color: '#8000ff00' } " +
                  redToBlue + "Rectangle { x: 80; y: 20; width: 50; height: 40; color: 'green' } }");
    expectAsShown(
        "Rectangle { width: 100; height: 20; color: 'red'; border { width: 10; color: '#800000ff' } }");
}

TEST_F(QtRectangles, ABorderThatDoesNotShowTakesNothingOfTheFill) {
    expectAsShown(
        "Rectangle { width: 100; height: 80; color: 'red'; border { width: 10; color: 'transparent' } }");
}

}  // namespace

}  // namespace mireth::qttest
