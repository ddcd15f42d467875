// The root of a view tree.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Platform/GestureRecognizer.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

/// Main thread only.
class MIRETH_EXPORT Window : public View {
  public:
    /// `size` in points; `screenScale` is the pixels per point of the screen that shows the window, > 0.
    explicit Window(Size size, double screenScale = 1.0);

    virtual double screenScale() const { return screenScale_; }
    /// Resizes the window in place, as a rotation or a split screen does.
    void resize(Size size);

    /// The window owns the recogniser from then on. One that is null or added already is ignored. May be
    /// called while a touch is delivered; the change counts from the next event.
    void addGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer);
    void removeGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer);
    /// In the order in which they were added.
    const std::vector<std::shared_ptr<GestureRecognizer>>& gestureRecognizers() const noexcept {
        return gestureRecognizers_;
    }

    /// Delivers what happened to the touches: to the recognisers first, then to the views they began in.
    void sendEvent(const TouchEvent& event);

  private:
    double screenScale_;
    std::vector<std::shared_ptr<GestureRecognizer>> gestureRecognizers_;
};

}  // namespace mireth::platform
