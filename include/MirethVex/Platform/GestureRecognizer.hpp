// Watches the touches of a window before its views get them.
#pragma once

#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/Touch.hpp"

namespace mireth::platform {

class GestureRecognizer;

/// Asked by the window that delivers the touches. Main thread.
class MIRETH_EXPORT GestureRecognizerDelegate {
  public:
    virtual ~GestureRecognizerDelegate() = default;
    /// May `recognizer` and `other` both see a touch that one of them has recognised? It is enough that the
    /// delegate of either says so.
    virtual bool shouldRecognizeSimultaneouslyWith(GestureRecognizer& recognizer,
                                                   GestureRecognizer& other) = 0;
};

/// Base of all recognisers. Main thread only. Always owned by std::shared_ptr; a window it is added to owns
/// it as well.
class MIRETH_EXPORT GestureRecognizer {
  public:
    enum class State { possible = 0, began = 1, changed = 2, ended = 3, cancelled = 4, failed = 5 };

    GestureRecognizer() = default;
    virtual ~GestureRecognizer();
    GestureRecognizer(const GestureRecognizer&) = delete;
    GestureRecognizer& operator=(const GestureRecognizer&) = delete;

    /// A disabled recogniser is told of no touch.
    bool isEnabled() const noexcept { return isEnabled_; }
    void setEnabled(bool enabled) noexcept { isEnabled_ = enabled; }

    /// True: the views lose a touch, as if it were cancelled, once this recogniser has recognised it.
    bool cancelsTouchesInView() const noexcept { return cancelsTouchesInView_; }
    void setCancelsTouchesInView(bool cancels) noexcept { cancelsTouchesInView_ = cancels; }

    /// Not owned; null means that every simultaneous recognition is refused.
    GestureRecognizerDelegate* delegate() const noexcept { return delegate_; }
    void setDelegate(GestureRecognizerDelegate* delegate) noexcept { delegate_ = delegate; }

    /// The window sets it back to `possible` when the last touch of a sequence is gone.
    State state() const noexcept { return state_; }
    void setState(State state) noexcept { state_ = state; }

    /// Called by the window; `touches` are those of `event` that are in the phase of the call's name.
    /// Overrides call the base first.
    virtual void touchesBegan(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesMoved(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesEnded(const std::vector<Touch>& touches, const TouchEvent& event);
    virtual void touchesCancelled(const std::vector<Touch>& touches, const TouchEvent& event);

  private:
    bool isEnabled_ = true;
    bool cancelsTouchesInView_ = true;
    GestureRecognizerDelegate* delegate_ = nullptr;
    State state_ = State::possible;
};

}  // namespace mireth::platform
