#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"

#include "PrivateSide/Extensions/CALayerExtensions/MaskColors.hpp"

namespace mireth {

namespace {

constexpr double maskCornerRadius = 4.0;

}  // namespace

void applyMask(platform::Layer& layer) {
    layer.appearance.backgroundColor = imageMaskStripeColor;
    layer.appearance.cornerRadius = maskCornerRadius;
}

void flushContent(platform::Layer& layer) noexcept {
    layer.content = {};
}

void flushAppearance(platform::Layer& layer) noexcept {
    layer.appearance = {};
}

void flushLayerTree(platform::Layer& layer) noexcept {
    flushContent(layer);
    flushAppearance(layer);
    for (const auto& sublayer : layer.sublayers()) {
        flushLayerTree(*sublayer);
    }
}

}  // namespace mireth
