#include "platforms/qt/mirror/RecordedWindow.hpp"

#include <utility>

#include "platforms/qt/objects/LayerValues.hpp"

namespace mireth::qt {

RecordedWindow::RecordedWindow(const LiveWindow& live, const Environment& environment)
    : Window(live.size(), live.scale()),
      live_(live),
      mainQueue_(environment.mainQueue),
      screens_(environment.appearance, environment.mainQueue, [this] { lookAgain(); }),
      touches_(*this, live, environment.clock, [this] { return look(); }) {
    rootLayer_.appearance.masksToBounds = true;
}

const std::vector<std::shared_ptr<platform::View>>& RecordedWindow::subviews() const {
    if (const auto shownAtPress = touches_.shownAtPress()) {
        mirrored_ = *shownAtPress;
    } else {
        mirrored_ = look();
        touches_.comeFirst();
    }
    return mirrored_;
}

std::vector<std::shared_ptr<platform::View>> RecordedWindow::look() const {
    lastPass_ = SteadyClock::now();
    SeenScreens seen;
    auto views = mirror_.viewsOf(live_, seen);
    screens_.update(seen);
    return views;
}

std::shared_ptr<const platform::View> RecordedWindow::unmasked() const {
    lastPass_ = SteadyClock::now();
    keepPicturesForAWhile();
    auto window = std::make_shared<View>(viewClass());
    window->mutableLayer() = layer();
    SeenScreens seen;
    for (const auto& view : mirror_.unmaskedViewsOf(live_, seen)) {
        window->addSubview(view);
    }
    screens_.update(seen);
    mirror_.paintPictures();
    return window;
}

void RecordedWindow::keepPicturesForAWhile() const {
    constexpr platform::Seconds aWhile(5);
    wereWanted_ = true;
    if (whilePicturesAreKept_ != nullptr) {
        return;
    }
    whilePicturesAreKept_ = mainQueue_->scheduleRepeating(aWhile, [this] {
        if (!std::exchange(wereWanted_, false)) {
            mirror_.letGoOfPictures();
            whilePicturesAreKept_ = nullptr;
        }
    });
}

void RecordedWindow::lookAgain() const {
    // Two passes a second: one that is longer ago was of a recording that is over or paused.
    constexpr std::chrono::seconds recently(1);
    if (SteadyClock::now() - lastPass_ < recently) {
        SeenScreens seen;
        (void)mirror_.viewsOf(live_, seen);
        screens_.update(seen);
    }
}

const platform::Layer& RecordedWindow::layer() const {
    if (live_.window() != nullptr || live_.widget() != nullptr) {
        const Size size = live_.size();
        rootLayer_.setFrame({0, 0, size.width, size.height});
        rootLayer_.appearance.backgroundColor = colorOf(live_.backgroundColor());
    }
    return rootLayer_;
}

}  // namespace mireth::qt
