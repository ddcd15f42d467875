// The entry to drawing a layer tree; LayerRenderer does the work.
#include "Platform/LayerRenderer.hpp"

namespace mireth::platform {

void Layer::render(GraphicsContext& context) const {
    LayerRenderer(context).drawRoot(*this);
}

}  // namespace mireth::platform
