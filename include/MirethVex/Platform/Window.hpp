// The root of a view tree.
#pragma once

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

  private:
    double screenScale_;
};

}  // namespace mireth::platform
