#include "PrivateSide/Extensions/CALayerExtensions/LayerState.hpp"

namespace mireth {

LayerState::LayerState(const platform::Layer& layer)
    : contentsRect(layer.content.contentsRect),
      contentsCenter(layer.content.contentsCenter),
      borderColor(layer.appearance.borderColor),
      backgroundColor(layer.appearance.backgroundColor),
      contentsGravity(layer.appearance.contentsGravity),
      isHidden(layer.appearance.hidden),
      masksToBounds(layer.appearance.masksToBounds),
      mask(layer.appearance.mask),
      isDoubleSided(layer.appearance.isDoubleSided),
      cornerRadius(layer.appearance.cornerRadius),
      maskedCorners(layer.appearance.maskedCorners),
      borderWidth(layer.appearance.borderWidth),
      rendering(layer.rendering),
      frame(layer.frame()),
      bounds(layer.geometry.bounds),
      position(layer.geometry.position),
      zPosition(layer.geometry.zPosition) {
    if (!layer.transform.transform.isIdentity()) {
        transform = std::make_unique<const Transform3D>(layer.transform.transform);
    }
}

}  // namespace mireth
