// Tells the views of a window of their touches, so far as no recogniser has taken them.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/View.hpp"
#include "Platform/ActiveTouches.hpp"

namespace mireth::platform {

/// Main thread. Whoever is told of a touch may do with the views as it likes.
class ViewTouches {
  public:
    /// `touches` live as long as this object.
    explicit ViewTouches(ActiveTouches& touches) : touches_(touches) {}

    /// After the recognisers: a touch that one of them has taken is cancelled once, and never heard of again.
    void tell(const TouchEvent& event);

  private:
    using TouchesByView = std::vector<std::pair<std::shared_ptr<View>, std::vector<Touch>>>;

    /// Cancellations of what views know and recognisers have taken; the views count as told.
    std::vector<Touch> takeTakenTouches();
    /// What is left to the views, by phases; they count as told of the begins.
    std::vector<Touch> takeOwnTouches(const TouchEvent& event);
    /// Those of one phase; the views in the order in which the event names them, without those that are gone.
    TouchesByView byView(TouchPhase phase, const TouchEvent& event) const;

    ActiveTouches& touches_;
};

}  // namespace mireth::platform
