// What a window looks like, and whether two states of it look the same.
#pragma once

#include <cstddef>
#include <memory>

#include "MirethVex/Platform/View.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerSnapshot.hpp"

namespace mireth {

/// Main thread.
class LayerComparator {
  public:
    /// `window` is not owned.
    explicit LayerComparator(const std::shared_ptr<const platform::View>& window) : window_(window) {}

    /// The window's layers as they are on screen now, nothing masked; without a layer when the window is
    /// gone. Later changes of the live layers do not touch it. What the views throw reaches the caller.
    LayerSnapshot captureLayerSnapshot();

    /// True when nothing is seen to have changed. A window that was gone at either time has changed.
    static bool compareLayers(const LayerSnapshot& before, const LayerSnapshot& after) noexcept;

  private:
    std::weak_ptr<const platform::View> window_;
    /// How many there were last time; the next snapshot will have about as many.
    std::size_t expectedLayers_ = 0;
};

}  // namespace mireth
