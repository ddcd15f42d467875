#include "platforms/qt/window/WindowCapture.hpp"

#include <utility>

#include "platforms/qt/objects/LayerValues.hpp"

namespace mireth::qt {

WindowCapture::WindowCapture(platform::Window& window, const LiveWindow& live,
                             const WindowEnvironment& environment)
    : live_(live),
      mainQueue_(environment.mainQueue),
      mirror_(environment.order),
      screens_(environment.appearance, environment.mainQueue, [this] { lookAgain(); }),
      touches_(window, live, environment.clock, [this] { return look(); }) {
    layer_.appearance.masksToBounds = true;
}

const WindowCapture::Views& WindowCapture::views() {
    if (const auto shownAtPress = touches_.shownAtPress()) {
        views_ = *shownAtPress;
    } else {
        startFrame();
        views_ = look();
    }
    return views_;
}

WindowCapture::Views WindowCapture::unmaskedViews() {
    startFrame();
    keepPicturesForAWhile();
    SeenScreens seen;
    auto views = mirror_.unmaskedViewsOf(live_, seen);
    screens_.update(seen);
    return views;
}

void WindowCapture::recordingEnded() noexcept {
    screens_.forget();
    lastFrame_ = {};
}

void WindowCapture::startFrame() {
    lastFrame_ = SteadyClock::now();
    touches_.comeFirst();
}

WindowCapture::Views WindowCapture::look() {
    SeenScreens seen;
    auto views = mirror_.viewsOf(live_, seen);
    screens_.update(seen);
    return views;
}

void WindowCapture::lookAgain() {
    // Recording makes two frames a second: one that is longer ago was of a recording that is over or paused.
    constexpr std::chrono::seconds recently(1);
    if (SteadyClock::now() - lastFrame_ < recently) {
        (void)look();
    }
}

void WindowCapture::keepPicturesForAWhile() {
    constexpr platform::Seconds aWhile(5);
    picturesWereWanted_ = true;
    if (whilePicturesAreKept_ != nullptr) {
        return;
    }
    whilePicturesAreKept_ = mainQueue_->scheduleRepeating(aWhile, [this] {
        if (!std::exchange(picturesWereWanted_, false)) {
            mirror_.letGoOfPictures();
            whilePicturesAreKept_ = nullptr;
        }
    });
}

const platform::Layer& WindowCapture::layer() {
    if (live_.window() != nullptr || live_.widget() != nullptr) {
        const Size size = live_.size();
        layer_.setFrame({0, 0, size.width, size.height});
        layer_.appearance.backgroundColor = colorOf(live_.backgroundColor());
    }
    return layer_;
}

}  // namespace mireth::qt
