// Brings the touches of one window to its recognisers and views, and settles who may go on with them.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "MirethVex/Platform/GestureRecognizer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

/// Main thread. Owned by a window, which stays alive while something is delivered. Everybody who is told of a
/// touch may send, add, remove, disable or drop anything.
class TouchDelivery {
  public:
    using Recognizers = std::vector<std::shared_ptr<GestureRecognizer>>;

    /// `recognizers` are the window's and live as long as this object.
    explicit TouchDelivery(const Recognizers& recognizers) : recognizers_(recognizers) {}

    /// At once, or after the event that is being delivered.
    void deliver(const TouchEvent& event);
    void recognizerWasRemoved(GestureRecognizer& recognizer);

  private:
    /// A touch between its begin and its end.
    struct ActiveTouch {
        Touch last;
        std::weak_ptr<View> view;
        /// The view has been told of the begin and is owed an end.
        bool isKnownToView = false;
        /// A recogniser has taken the touch away from the view.
        bool isTakenFromView = false;
        /// Those that have been told of the begin and are owed an end; never called through.
        std::vector<const GestureRecognizer*> knownTo;
    };

    /// `event` without the touches that have no usable time or place; one that ends so is cancelled, so that
    /// nobody waits for its end.
    TouchEvent checked(const TouchEvent& event);
    /// Once a window: a toolkit that makes the mistake makes it at every touch.
    void tellOfRefusal();
    void deliverNow(const TouchEvent& event);
    void cancelTouchesThatBeginAgain(const TouchEvent& event);
    void trackTouches(const TouchEvent& event);
    void forgetTouches(const TouchEvent& event);

    void tellRecognizer(GestureRecognizer& recognizer, const TouchEvent& event);
    void tellRecognizer(GestureRecognizer& recognizer, TouchPhase phase, const TouchEvent& event);
    void takeTouchesFromViews(const GestureRecognizer& recognizer, const std::vector<Touch>& touches);
    void cancelTouchesOf(GestureRecognizer& recognizer);
    bool isOfWindow(const GestureRecognizer& recognizer) const;
    /// Another recogniser has recognised its gesture, and the two may not go on together.
    bool isExcluded(GestureRecognizer& recognizer) const;

    using TouchesByView = std::vector<std::pair<std::shared_ptr<View>, std::vector<Touch>>>;

    void tellViews(const TouchEvent& event);
    /// Those of one phase; the views in the order in which the event names them, without those that are gone.
    TouchesByView touchesByView(TouchPhase phase, const TouchEvent& event) const;
    /// What the views are told: `event` without the touches that were taken from them, which are cancelled
    /// once.
    TouchEvent forViews(const TouchEvent& event);

    const Recognizers& recognizers_;
    std::map<std::uint64_t, ActiveTouch> activeTouches_;
    std::deque<TouchEvent> waiting_;
    bool isDelivering_ = false;
    bool hasToldOfRefusal_ = false;
};

}  // namespace mireth::platform
