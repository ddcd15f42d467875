// Walks a layer tree and draws it, back to front. Used by Layer::render.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::platform {

/// One drawing pass. Layers may hold any values, and may even share sublayers in circles: what cannot be
/// drawn is left out, and the pass ends after a bounded number of layers.
class LayerRenderer {
  public:
    explicit LayerRenderer(GraphicsContext& context) : context_(context) {}

    void drawRoot(const Layer& root);

  private:
    /// What a layer takes over from the layers above it.
    struct Place {
        /// From the layer's coordinates to the root's.
        AffineTransform toRoot;
        /// Opacity not yet applied by a group.
        double opacity = 1;
        /// True when an odd number of turns shows the layer's back.
        bool backFacing = false;
        /// True when an odd number of layers above places its sublayers with y pointing up.
        bool upsideDown = false;
        int depth = 0;
        int groups = 0;
    };

    // All of these find the context in the coordinates of `layer`.
    void draw(const Layer& layer, const Place& place);
    void drawMasked(const Layer& layer, const Place& place);
    void drawFaded(const Layer& layer, const Place& place);
    void drawPieces(const Layer& layer, const Place& place);
    void drawShadow(const Layer& layer, double opacity);
    void drawImage(const Layer& layer, const Place& place);
    void drawSublayers(const Layer& layer, const Place& place);
    void drawSublayer(const Layer& sublayer, const AffineTransform& sublayerSpace, Place place);
    /// Keeps the picture that a group needs no larger than what is drawn into it.
    void clipTo(const Layer& content, const AffineTransform& toLayer, const Place& place);

    GraphicsContext& context_;
    std::size_t layersLeft_ = 200'000;
};

}  // namespace mireth::platform
