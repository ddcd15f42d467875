// What is drawn at the edges of masking: where the walk ends, and of what only lends its shape.
#include <string>

#include "CanaryFrames.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::View;
using platform::ViewClass;
using test::canaryPixels;
using test::maskGrey;
using test::paint;
using EndOfTheWalk = test::CanaryFrames;
using MaskedEdges = test::CanaryFrames;

std::uint32_t pixel(const Image& image, std::size_t x, std::size_t y) {
    return image.pixels()[y * image.pixelWidth() + x];
}

/// A view in a canary colour that nothing masks.
std::shared_ptr<View> glowingAt(Rect frame) {
    auto view = std::make_shared<View>();
    view->setFrame(frame);
    view->mutableLayer().appearance.backgroundColor = test::canary;
    return view;
}

TEST_F(EndOfTheWalk, AnEndlessTreeShowsNothingBelowItsEnd) {
    /// Builds the next level whenever it is asked.
    class Endless final : public View {
      public:
        explicit Endless(std::size_t level) : level_(level) {
            setFrame({0, 0, 200, 200});
            if (level_ > LayerReplicator::maxDepth) {
                paint(mutableLayer());
            }
        }
        const std::vector<std::shared_ptr<View>>& subviews() const override {
            children_ = {std::make_shared<Endless>(level_ + 1)};
            return children_;
        }

      private:
        const std::size_t level_;
        mutable std::vector<std::shared_ptr<View>> children_;
    };
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    window->addSubview(std::make_shared<Endless>(1));
    const Image image = capture(window);
    EXPECT_EQ(image.size(), (Size{200, 200}));
    EXPECT_EQ(canaryPixels(image), 0);
}

TEST_F(EndOfTheWalk, ViewsAfterTheMostThatAreWalkedAreBlocks) {
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    const auto crowd = std::make_shared<View>();
    crowd->mutableLayer().appearance.hidden = true;
    window->addSubview(crowd);
    // The window, the crowd and the last that is still drawn count as well.
    for (std::size_t view = 3; view < ViewTreeWalk::maxViews; ++view) {
        crowd->addSubview(std::make_shared<View>());
    }
    window->addSubview(glowingAt({0, 0, 20, 20}));
    window->addSubview(glowingAt({50, 0, 20, 20}));
    window->addSubview(glowingAt({100, 0, 20, 20}));
    const Image image = capture(window);
    EXPECT_TRUE(test::isCanary(pixel(image, 10, 10))) << "the last";
    EXPECT_EQ(pixel(image, 60, 10), maskGrey);
    EXPECT_EQ(pixel(image, 110, 10), maskGrey);
    EXPECT_EQ(canaryPixels(image), 20 * 20);
}

TEST_F(MaskedEdges, TheColoursOfALayersMaskAreNotDrawn) {
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    const auto view = std::make_shared<View>();
    view->setFrame({20, 20, 100, 100});
    view->mutableLayer().appearance.backgroundColor = Color{0, 1, 0, 1};
    const auto mask = std::make_shared<platform::Layer>();
    mask->setFrame({0, 0, 50, 100});
    paint(*mask);
    view->mutableLayer().appearance.mask = mask;
    window->addSubview(view);
    const Image image = capture(window);
    EXPECT_EQ(canaryPixels(image), 0);
    EXPECT_EQ(pixel(image, 40, 40), 0xFF00FF00U) << "the view's own colour, where the mask is";
    EXPECT_EQ(pixel(image, 100, 40), 0xFF000000U);
}

TEST_F(MaskedEdges, AClassThatIsRegisteredAsTextInputLateIsMaskedFromThenOn) {
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    const auto& pin = ViewClass::registerClass("CanaryPinPad", &ViewClass::view());
    const auto view = std::make_shared<View>(pin);
    view->setFrame({20, 20, 60, 60});
    view->mutableLayer().appearance.backgroundColor = test::canary;
    window->addSubview(view);
    start(window);
    EXPECT_TRUE(test::isCanary(pixel(nextFrame(), 50, 50)));
    (void)ViewClass::registerClass("CanaryPinPad", &ViewClass::view(), ViewClass::TextInput::conforms);
    const Image image = nextFrame();
    EXPECT_EQ(canaryPixels(image), 0) << "in the recording that runs";
    EXPECT_EQ(pixel(image, 50, 50), maskGrey);
    EXPECT_EQ(canaryPixels(capture(window)), 0);
}

TEST_F(MaskedEdges, WhatAHostingControllerLeftOnScreenIsMasked) {
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    const auto content = glowingAt({20, 20, 100, 100});
    content->addSubview(glowingAt({50, 50, 100, 100}));
    window->addSubview(content);
    auto controller = std::make_shared<test::HostingController>();
    controller->setView(content);
    start(window);
    EXPECT_EQ(canaryPixels(nextFrame()), 0);
    controller.reset();
    const Image image = nextFrame();
    EXPECT_EQ(canaryPixels(image), 0);
    EXPECT_EQ(pixel(image, 70, 70), maskGrey);
}

/// Shows another layer after every further call, as a binding does that builds them when it is asked.
class Shifting final : public View {
  public:
    explicit Shifting(Rect frame) { setFrame(frame); }
    const ViewClass& viewClass() const override { return after(View::viewClass()); }
    const std::vector<std::shared_ptr<View>>& subviews() const override { return after(View::subviews()); }
    std::shared_ptr<platform::ViewController> viewController() const override {
        return after(View::viewController());
    }
    std::shared_ptr<const platform::Layer> presentationLayer() const override {
        return after(View::presentationLayer());
    }
    const platform::Layer& layer() const override {
        built_ = View::layer();
        built_.appearance.backgroundColor = Color{0, 1, 0, 1};
        return built_;
    }

  private:
    template <class Value>
    const Value& after(const Value& value) const {
        built_.appearance.backgroundColor = test::canary;
        built_.setFrame({0, 0, 200, 200});
        return value;
    }

    mutable platform::Layer built_;
};

TEST_F(MaskedEdges, ALayerIsReadBeforeTheNextCallOnItsView) {
    const auto window = std::make_shared<platform::Window>(Size{200, 200});
    const auto view = std::make_shared<Shifting>(Rect{20, 20, 60, 60});
    view->addSubview(std::make_shared<Shifting>(Rect{10, 10, 20, 20}));
    window->addSubview(view);
    const Image image = capture(window);
    EXPECT_EQ(canaryPixels(image), 0);
    EXPECT_EQ(pixel(image, 50, 50), 0xFF00FF00U);
    EXPECT_EQ(pixel(image, 100, 100), 0xFF000000U);
}

}  // namespace
}  // namespace mireth
