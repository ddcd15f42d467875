// Draws trees whose private views glow in canary colours, and finds not one such pixel in the frame.
#include <cmath>
#include <functional>
#include <numbers>
#include <string>

#include "CanaryFrames.hpp"
#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Layer;
using platform::View;
using platform::ViewClass;
using test::canary;
using test::canaryPixels;
using test::HostingController;
using test::isCanary;
using test::paint;

/// One way in which a view is private.
struct Kind {
    std::string name;
    std::function<std::shared_ptr<View>()> make;
    std::vector<const ViewClass*> additional;
};

std::shared_ptr<View> ofClass(const char* name, const ViewClass& superclass) {
    return std::make_shared<View>(ViewClass::registerClass(name, &superclass));
}

std::shared_ptr<View> declarativeView() {
    // The view's own reference to its controller is weak.
    static std::vector<std::shared_ptr<platform::ViewController>> alive;
    alive.push_back(std::make_shared<HostingController>());
    auto view = std::make_shared<View>();
    alive.back()->setView(view);
    return view;
}

std::vector<Kind> privateKinds() {
    const ViewClass& card = ViewClass::registerClass("CanaryCard", &ViewClass::view());
    const ViewClass& input =
        ViewClass::registerClass("CanaryInput", &ViewClass::view(), ViewClass::TextInput::conforms);
    return {
        {"Label", [] { return std::make_shared<platform::Label>(); }, {}},
        {"LabelSubclass", [] { return ofClass("CanaryLabel", ViewClass::label()); }, {}},
        {"TextField", [] { return std::make_shared<platform::TextField>(); }, {}},
        {"TextView", [] { return std::make_shared<platform::TextView>(); }, {}},
        {"TextInput", [&input] { return std::make_shared<View>(input); }, {}},
        {"ImageView",
         [] {
             auto view = std::make_shared<platform::ImageView>();
             view->setImage(Image::filled(8, 8, 0xFFFF00FFU));
             return view;
         },
         {}},
        {"TintedImage",
         [] {
             auto view = std::make_shared<platform::ImageView>();
             view->setImage(Image::filled(8, 8, 0xFF00FF00U));
             view->setTint(canary);
             return view;
         },
         {}},
        {"AlertAction", [] { return ofClass("_UIAlertControllerActionView", ViewClass::view()); }, {}},
        {"InterfaceAction", [] { return ofClass("_UIInterfaceActionView", ViewClass::view()); }, {}},
        {"Declarative", declarativeView, {}},
        {"HostNamed", [&card] { return std::make_shared<View>(card); }, {&card}},
        {"HostNamedSubclass", [&card] { return ofClass("CanaryGoldCard", card); }, {&card}},
    };
}

/// One way in which a view comes onto the screen.
struct Situation {
    std::string name;
    std::function<void(View& view, View& container)> arrange;
};

void turn(Layer& layer, const AffineTransform& transform) {
    layer.transform.transform = Transform3D::fromAffine(transform);
}

std::vector<Situation> situations() {
    return {
        {"Still", [](View&, View&) {}},
        {"Moving",
         [](View& view, View&) {
             auto onScreen = std::make_shared<Layer>(view.layer());
             onScreen->setFrame({120, 90, 60, 40});
             view.setPresentationLayer(onScreen);
         }},
        {"Fading",
         [](View& view, View&) {
             auto onScreen = std::make_shared<Layer>(view.layer());
             onScreen->appearance.opacity = 0.5;
             view.setPresentationLayer(onScreen);
         }},
        {"FadingTogether", [](View&, View& container) { container.mutableLayer().appearance.opacity = 0.3; }},
        {"Clipped",
         [](View& view, View& container) {
             container.mutableLayer().appearance.masksToBounds = true;
             container.mutableLayer().appearance.cornerRadius = 12;
             view.setFrame({60, 60, 90, 90});
         }},
        {"Rotated",
         [](View& view, View&) {
             turn(view.mutableLayer(), AffineTransform::rotation(std::numbers::pi / 5));
         }},
        {"RotatedAboutACorner",
         [](View& view, View&) {
             view.mutableLayer().geometry.anchorPoint = {0, 1};
             turn(view.mutableLayer(), AffineTransform::rotation(0.7));
         }},
        {"Scaled", [](View& view, View&) { turn(view.mutableLayer(), AffineTransform::scale(1.7, 0.4)); }},
        {"Mirrored", [](View& view, View&) { turn(view.mutableLayer(), AffineTransform::scale(-1, 1)); }},
        {"ContainerTurned",
         [](View&, View& container) { turn(container.mutableLayer(), AffineTransform::rotation(1)); }},
        {"Scrolled", [](View&, View& container) { container.mutableLayer().geometry.bounds.y = 35; }},
        {"UpsideDown",
         [](View&, View& container) { container.mutableLayer().rendering.isGeometryFlipped = true; }},
        {"BehindAMask",
         [](View& view, View&) {
             const auto mask = std::make_shared<Layer>();
             mask->setFrame({0, 0, 50, 30});
             paint(*mask);
             view.mutableLayer().appearance.mask = mask;
         }},
        {"Raised", [](View& view, View&) { view.mutableLayer().geometry.zPosition = 10; }},
        {"SubPixel", [](View& view, View&) { view.setFrame({10.37, 20.81, 33.3, 21.9}); }},
        {"RoundAndBelowAnother",
         [](View& view, View& container) {
             view.mutableLayer().appearance.cornerRadius = 20;
             const auto glass = std::make_shared<View>();
             glass->setFrame({0, 0, 200, 200});
             glass->mutableLayer().appearance.backgroundColor = Color{0, 0.5, 0, 0.25};
             container.addSubview(glass);
         }},
        {"WithChildren",
         [](View& view, View&) {
             const auto child = std::make_shared<View>();
             child->setFrame({-20, -20, 100, 100});
             paint(child->mutableLayer());
             const auto grandchild = std::make_shared<View>();
             grandchild->setFrame({-5, -5, 200, 20});
             paint(grandchild->mutableLayer());
             child->addSubview(grandchild);
             view.addSubview(child);
         }},
    };
}

class MaskedFrame : public test::CanaryFrames {
  protected:
    /// A picture of a window with a private view, `depth` containers deep.
    Image capture(const Kind& kind, const Situation& situation, int depth, bool disableMasking) {
        const auto window = std::make_shared<platform::Window>(Size{200, 200});
        window->mutableLayer().appearance.backgroundColor = Color::gray(0.9);
        std::shared_ptr<View> container = window;
        for (int level = 0; level < depth; ++level) {
            const auto next = std::make_shared<View>();
            next->setFrame({10, 10, 150, 150});
            next->mutableLayer().appearance.backgroundColor = Color{0.2, 0.8, 0.2, 0.5};
            container->addSubview(next);
            container = next;
        }
        const auto view = kind.make();
        view->setFrame({20, 30, 60, 40});
        paint(view->mutableLayer());
        if (auto* imageView = dynamic_cast<platform::ImageView*>(view.get())) {
            imageView->setImage(imageView->image());
        }
        container->addSubview(view);
        situation.arrange(*view, *container);
        return CanaryFrames::capture(window, disableMasking, kind.additional);
    }
};

TEST_F(MaskedFrame, NoPrivatePixelIsDrawnInAnySituation) {
    for (const Kind& kind : privateKinds()) {
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
    for (const Kind& kind : privateKinds()) {
        for (const Situation& situation : situations()) {
            const Image image = capture(kind, situation, 1, true);
            EXPECT_GT(canaryPixels(image), 50) << kind.name << ", " << situation.name;
        }
    }
}

TEST_F(MaskedFrame, ShadowViewsAreDrawn) {
    const Kind shadow{"ShadowView", [] { return ofClass("_CanaryShadowView", ViewClass::imageView()); }, {}};
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
    const Kind card = privateKinds().front();
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
