// Tells a window's recognisers of touches, and settles which of them may go on with theirs.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Platform/GestureRecognizer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "Platform/ActiveTouches.hpp"

namespace mireth::platform {

/// What it does with the state of a recogniser; the rest is the recogniser's own affair:
///
///   any but failed → cancelled   it is disabled: its touches are cancelled, and it hears of no more
///   any but failed → failed      another has recognised, and the two may not go on together: likewise
///   any → possible               the last finger is up, or it was removed from the window
///
/// Main thread. Whoever is told of a touch may add, remove, disable or drop recognisers.
class RecognizerArbiter {
  public:
    using Recognizers = std::vector<std::shared_ptr<GestureRecognizer>>;

    /// Both live as long as this object.
    RecognizerArbiter(const Recognizers& recognizers, ActiveTouches& touches)
        : recognizers_(recognizers), touches_(touches) {}

    /// In the order in which they were added. A recogniser that cancels touches in views takes those it has
    /// been told of from them once it has recognised.
    void tell(const TouchEvent& event);
    /// After the last finger is up.
    void makeReady();
    void wasRemoved(GestureRecognizer& recognizer);

  private:
    void tell(GestureRecognizer& recognizer, const TouchEvent& event);
    void tellPhase(GestureRecognizer& recognizer, TouchPhase phase, const TouchEvent& event);
    /// Those of one phase that the recogniser is to hear of: a begin, or what goes on with a begin it has
    /// heard.
    std::vector<Touch> touchesFor(const GestureRecognizer& recognizer, TouchPhase phase,
                                  const TouchEvent& event);
    void takeFromViews(const GestureRecognizer& recognizer, const std::vector<Touch>& touches);
    void cancelTouchesOf(GestureRecognizer& recognizer);
    bool isOfWindow(const GestureRecognizer& recognizer) const;
    /// Another recogniser has recognised its gesture, and the two may not go on together.
    bool isExcluded(GestureRecognizer& recognizer) const;

    const Recognizers& recognizers_;
    ActiveTouches& touches_;
};

}  // namespace mireth::platform
