// The root of a view tree.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Platform/GestureRecognizer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

class TouchDelivery;

/// Main thread only.
class MIRETH_EXPORT Window : public View {
  public:
    /// `size` in points; one that is empty or not finite is kept, and cannot be drawn. `screenScale` is the
    /// pixels per point of the screen that shows the window; 1 is taken for one that is not positive or
    /// finite.
    explicit Window(Size size, double screenScale = 1.0);
    ~Window() override;

    /// Read by `MirethSR::initializeProject`, for the pixels in its events.
    virtual double screenScale() const { return screenScale_; }
    /// Resizes the window in place, as a rotation or a split screen does. Of no effect where `layer` is
    /// overridden.
    void resize(Size size);

    /// The window owns the recogniser from then on, which is told of the touches that begin after this call.
    /// One that is null or added already is ignored. Also while a touch is delivered.
    void addGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer);
    /// The recogniser is told at once that the touches it has seen begin are cancelled, then of nothing any
    /// more. One that is not of this window is ignored. Also while a touch is delivered.
    void removeGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer);
    /// In the order in which they were added.
    const std::vector<std::shared_ptr<GestureRecognizer>>& gestureRecognizers() const noexcept {
        return gestureRecognizers_;
    }

    /// Delivers what happened to the touches: to the recognisers first, in the order in which they were
    /// added, then to the views that the touches began in. The toolkit sends every phase of every touch, with
    /// the `view` and the `window` of its begin. A touch that began elsewhere is ignored; one that begins
    /// again has lost its end and is cancelled first. What is said of a touch at another time or place than
    /// Touch allows is ignored, with a line on standard error the first time; an end is a cancellation then.
    ///
    /// An event that is sent from within a delivery waits until that one is over, so that everybody hears of
    /// things in the order in which they happened.
    void sendEvent(const TouchEvent& event);

  protected:
    /// Called after a recogniser came or went. A recording adds one when it begins and removes it at its end:
    /// a platform that finds screens out by itself begins anew with the next one. Must not throw.
    virtual void gestureRecognizersDidChange() {}

  private:
    double screenScale_;
    std::vector<std::shared_ptr<GestureRecognizer>> gestureRecognizers_;
    const std::unique_ptr<TouchDelivery> touchDelivery_;
};

}  // namespace mireth::platform
