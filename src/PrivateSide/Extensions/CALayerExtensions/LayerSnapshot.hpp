// What a view tree looks like at one instant, as far as two instants are compared.
#pragma once

#include <cstddef>
#include <vector>

#include "MirethVex/Platform/View.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerState.hpp"

namespace mireth {

/// The states of a tree's layers, each before its sublayers, back to front. It goes through the tree as a
/// copy does, presentation layers first and trees without end cut off by mask blocks, but masks nothing and
/// never asks for `View::unmasked`. A list, not a tree, since it is made while a tap is being handled.
class LayerSnapshot {
  public:
    /// Of nothing; it has no layers.
    LayerSnapshot() = default;

    /// Of `root` and all views below it. What the views throw reaches the caller. Main thread.
    /// `expectedLayers`: about as many as there will be, to make room for; any number does.
    static LayerSnapshot capture(const platform::View& root, std::size_t expectedLayers = 0);

    const std::vector<LayerState>& layers() const noexcept { return layers_; }

  private:
    class Walk;
    std::vector<LayerState> layers_;
};

}  // namespace mireth
