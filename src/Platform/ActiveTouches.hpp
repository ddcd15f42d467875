// The touches of a window between their begin and their end, and who has been told of them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "MirethVex/Platform/GestureRecognizer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

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

inline bool isOver(const Touch& touch) {
    return touch.phase == TouchPhase::ended || touch.phase == TouchPhase::cancelled;
}

inline Touch cancelled(Touch touch) {
    touch.phase = TouchPhase::cancelled;
    return touch;
}

/// Main thread. Nothing begins or ends while somebody is told of it.
class ActiveTouches {
  public:
    /// Null when there is none.
    ActiveTouch* find(const Touch& touch);
    const ActiveTouch* find(const Touch& touch) const;
    /// By identity.
    std::map<std::uint64_t, ActiveTouch>& all() noexcept { return byIdentity_; }
    bool isEmpty() const noexcept { return byIdentity_.empty(); }

    /// The cancellations of those that `event` begins, though nobody has seen their end.
    TouchEvent beginningAgain(const TouchEvent& event) const;
    /// Takes in what begins, and where the others are now.
    void track(const TouchEvent& event);
    /// Lets go of what ends.
    void forget(const TouchEvent& event);

  private:
    std::map<std::uint64_t, ActiveTouch> byIdentity_;
};

}  // namespace mireth::platform
