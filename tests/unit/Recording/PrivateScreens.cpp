#include "PrivateScreens.hpp"

#include <numbers>

#include "CanaryFrames.hpp"
#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth::test {

using platform::Image;
using platform::Layer;
using platform::View;
using platform::ViewClass;

namespace {

std::shared_ptr<View> declarativeView() {
    // The view's own reference to its controller is weak.
    static std::vector<std::shared_ptr<platform::ViewController>> alive;
    alive.push_back(std::make_shared<HostingController>());
    auto view = std::make_shared<View>();
    alive.back()->setView(view);
    return view;
}

void turn(Layer& layer, const AffineTransform& transform) {
    layer.transform.transform = Transform3D::fromAffine(transform);
}

}  // namespace

std::shared_ptr<View> ofClass(const char* name, const ViewClass& superclass) {
    return std::make_shared<View>(ViewClass::registerClass(name, &superclass));
}

std::vector<PrivateKind> privateKinds() {
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

void addPrivateView(const std::shared_ptr<View>& root, const PrivateKind& kind, const Situation& situation,
                    int depth) {
    std::shared_ptr<View> container = root;
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
}

}  // namespace mireth::test
