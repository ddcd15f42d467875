// Draws trees whose private views glow in canary colours, and finds not one such pixel in the frame.
#include <string>

#include "CanaryFrames.hpp"
#include "PrivateScreens.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::View;
using platform::ViewClass;
using test::canaryPixels;
using test::isCanary;
using test::ofClass;
using test::PrivateKind;
using test::privateKinds;
using test::Situation;
using test::situations;

class MaskedFrame : public test::CanaryFrames {
  protected:
    /// A picture of a window with a private view, `depth` containers deep.
    Image capture(const PrivateKind& kind, const Situation& situation, int depth, bool disableMasking) {
        const auto window = std::make_shared<platform::Window>(Size{200, 200});
        window->mutableLayer().appearance.backgroundColor = Color::gray(0.9);
        addPrivateView(window, kind, situation, depth);
        return CanaryFrames::capture(window, disableMasking, kind.additional);
    }
};

TEST_F(MaskedFrame, NoPrivatePixelIsDrawnInAnySituation) {
    for (const PrivateKind& kind : privateKinds()) {
        for (const Situation& situation : situations()) {
            for (const int depth : {0, 1, 3}) {
                const Image image = capture(kind, situation, depth, false);
                ASSERT_GE(image.pixels().size(), 200U * 200U);
                EXPECT_EQ(canaryPixels(image), 0) << kind.name << ", " << situation.name << ", " << depth;
            }
        }
    }
}

TEST_F(MaskedFrame, TheSameScreensGlowWithoutMasking) {
    // Else the test above would find nothing because there is nothing.
    for (const PrivateKind& kind : privateKinds()) {
        for (const Situation& situation : situations()) {
            const Image image = capture(kind, situation, 1, true);
            EXPECT_GT(canaryPixels(image), 50) << kind.name << ", " << situation.name;
        }
    }
}

TEST_F(MaskedFrame, ShadowViewsAreDrawn) {
    const PrivateKind shadow{
        "ShadowView", [] { return ofClass("_CanaryShadowView", ViewClass::imageView()); }, {}};
    EXPECT_GT(canaryPixels(capture(shadow, situations().front(), 1, false)), 50);
}

TEST_F(MaskedFrame, MaskBlockCoversWhatTheViewCovered) {
    // Turned and enlarged, the block must lie where the view would.
    const auto covered = [](const Image& image, auto&& matches) {
        double x = 0;
        double y = 0;
        double count = 0;
        for (std::size_t i = 0; i < image.pixels().size(); ++i) {
            if (matches(image.pixels()[i])) {
                x += static_cast<double>(i % 200);
                y += static_cast<double>(i / 200);
                ++count;
            }
        }
        return Rect{x / count, y / count, count, 0};
    };
    const PrivateKind card = privateKinds().front();
    for (const Situation& situation : situations()) {
        if (situation.name != "Rotated" && situation.name != "RotatedAboutACorner" &&
            situation.name != "Scaled" && situation.name != "Moving" && situation.name != "Still") {
            continue;
        }
        const Situation withoutShadow{situation.name, [&situation](View& view, View& container) {
                                          view.mutableLayer().appearance.shadowOpacity = 0;
                                          situation.arrange(view, container);
                                      }};
        const Rect view = covered(capture(card, withoutShadow, 0, true), isCanary);
        const Rect block = covered(capture(card, withoutShadow, 0, false),
                                   [](std::uint32_t pixel) { return pixel == test::maskGrey; });
        EXPECT_NEAR(view.x, block.x, 1.0) << situation.name;
        EXPECT_NEAR(view.y, block.y, 1.0) << situation.name;
        EXPECT_NEAR(view.width, block.width, 0.15 * view.width) << situation.name;
    }
}

}  // namespace
}  // namespace mireth
