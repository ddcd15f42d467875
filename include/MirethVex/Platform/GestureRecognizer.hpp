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
    /// May both go on while one of them has recognised its gesture? It is enough that the delegate of either
    /// says so. What it throws is reported on standard error and counts as a no.
    virtual bool shouldRecognizeSimultaneouslyWith(GestureRecognizer& recognizer,
                                                   GestureRecognizer& other) = 0;
};

/// Base of all recognisers. Main thread only. Always owned by std::shared_ptr; the one window it is added to
/// owns it as well.
///
/// It has recognised its gesture while its state is `began`, `changed` or `ended`. From then on the window's
/// other recognisers get no more touches until all fingers are up, unless a delegate lets both go on: what
/// they have seen is cancelled and their state is `failed`. The first to recognise wins.
class MIRETH_EXPORT GestureRecognizer {
  public:
    enum class State { possible = 0, began = 1, changed = 2, ended = 3, cancelled = 4, failed = 5 };

    GestureRecognizer() = default;
    virtual ~GestureRecognizer();
    GestureRecognizer(const GestureRecognizer&) = delete;
    GestureRecognizer& operator=(const GestureRecognizer&) = delete;

    /// A disabled recogniser is told of no touch. One that is disabled in the middle of a touch is told with
    /// the next event that it is cancelled.
    bool isEnabled() const noexcept { return isEnabled_; }
    void setEnabled(bool enabled) noexcept { isEnabled_ = enabled; }

    /// True: once this recogniser has recognised its gesture, the views lose its touches, as if they were
    /// cancelled.
    bool cancelsTouchesInView() const noexcept { return cancelsTouchesInView_; }
    void setCancelsTouchesInView(bool cancels) noexcept { cancelsTouchesInView_ = cancels; }

    /// Not owned: it outlives the recogniser or is taken back with null, which refuses every simultaneous
    /// recognition.
    GestureRecognizerDelegate* delegate() const noexcept { return delegate_; }
    void setDelegate(GestureRecognizerDelegate* delegate) noexcept { delegate_ = delegate; }

    /// The window sets it back to `possible` when the last finger is up. A recogniser that sets itself to
    /// `failed` gets no more touches until then.
    State state() const noexcept { return state_; }
    void setState(State state) noexcept { state_ = state; }

    /// Called by the window, for touches whose begin it has told this recogniser; `touches` are those of
    /// `event` that are in the phase of the call's name. Overrides call the base first. What one throws is
    /// reported on standard error and keeps no touch from the other recognisers or the views.
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
