#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"

#include "PrivateSide/Extensions/CALayerExtensions/LayerComparison.hpp"

namespace mireth {

LayerSnapshot LayerComparator::captureLayerSnapshot() {
    const auto window = window_.lock();
    if (window == nullptr) {
        return {};
    }
    LayerSnapshot snapshot = LayerSnapshot::capture(*window, expectedLayers_);
    expectedLayers_ = snapshot.layers().size();
    return snapshot;
}

bool LayerComparator::compareLayers(const LayerSnapshot& before, const LayerSnapshot& after) noexcept {
    return !before.layers().empty() && isEqual(before, after);
}

}  // namespace mireth
