#include "PrivateSide/Extensions/CALayerExtensions/LayerSnapshot.hpp"

#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/ViewTreeWalk.hpp"

namespace mireth {

using platform::Layer;
using platform::View;

/// One pass over one tree.
class LayerSnapshot::Walk {
  public:
    explicit Walk(std::vector<LayerState>& layers) : layers_(layers) {}

    void add(const View& view) {
        // Held while it is read: the next call on the view may put another in its place.
        const auto presentation = view.presentationLayer();
        const Layer& source = presentation != nullptr ? *presentation : view.layer();
        if (walk_.isEndless(view)) {
            layers_.emplace_back(*makeMaskBlock(source));
            return;
        }
        const std::size_t index = layers_.size();
        layers_.emplace_back(source);
        const ViewTreeWalk::Level level(walk_, view);
        layers_[index].sublayerCount = level.subviews().size();
        for (const auto& subview : level.subviews()) {
            add(*subview);
        }
    }

  private:
    std::vector<LayerState>& layers_;
    ViewTreeWalk walk_;
};

LayerSnapshot LayerSnapshot::capture(const View& root, std::size_t expectedLayers) {
    LayerSnapshot snapshot;
    snapshot.layers_.reserve(expectedLayers);
    Walk(snapshot.layers_).add(root);
    return snapshot;
}

}  // namespace mireth
