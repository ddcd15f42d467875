// Makes a detached, masked copy of a view tree's layers: what frames are drawn from.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"
#include "MirethVex/Platform/View.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/ViewMasking.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/ViewTreeWalk.hpp"

namespace mireth {

/// Copies layers view by view, depth first; bitmaps are shared, not copied. Main thread only. One replicator
/// serves many copies, and knows each view class after the first.
///
/// The views' virtual functions may build what they return, change the tree around them, or throw; what they
/// throw reaches the caller, who then has no copy at all. Trees that never end are cut off where
/// `ViewTreeWalk` says so, by a mask block.
class LayerReplicator {
  public:
    static constexpr std::size_t maxDepth = ViewTreeWalk::maxDepth;

    /// `additionalViewTypesToMask`: classes masked beside the built-in ones; null entries are ignored.
    explicit LayerReplicator(std::vector<const platform::ViewClass*> additionalViewTypesToMask = {});

    /// A new layer for `root` and, below it, one for each view that is not hidden behind a mask. The subviews
    /// of a masked view are not asked for. With masking disabled `View::unmasked` stands in for a view, which
    /// is not asked for otherwise. `withEnabledAnimations`: where a view has a presentation layer, that is
    /// copied instead of the model.
    std::shared_ptr<platform::Layer> replicateLayerTree(const platform::View& root, bool withEnabledMasking,
                                                        bool withEnabledAnimations = true);

  private:
    class Walk;
    ViewMasking masking_;
};

}  // namespace mireth
