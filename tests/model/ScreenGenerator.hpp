// Random screens for random scenarios.
#pragma once

#include <string>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"
#include "model/ChangeGenerator.hpp"

namespace mireth::model {

class ScreenGenerator {
  public:
    ScreenGenerator(Chance& chance, Size window) : chance_(chance), window_(window) {}

    /// One to three screens of a few views each, some of which react to taps.
    Json makeScreens();

    // Once the screens are made

    std::string makeScreenName();
    /// Within a view, beside all of them, or beside the window.
    Point makePoint();
    /// Of one of the views; none when there are no views.
    std::vector<Json> makeChangesOfAView();

  private:
    Json makeView(const Rect& frame);
    Json makeReactions();
    Json makeReaction();

    Chance& chance_;
    const Size window_;
    std::vector<std::string> names_;
    std::vector<GeneratedView> views_;
};

}  // namespace mireth::model
