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

std::shared_ptr<platform::Layer> makeMaskBlock(const platform::Layer& source) {
    auto block = std::make_shared<platform::Layer>();
    block->geometry = source.geometry;
    // A frame follows from bounds, position, anchor point and transform together: without the transform the
    // block of a turned or enlarged view would lie beside what it stands for.
    block->transform.transform = source.transform.transform;
    applyMask(*block);
    return block;
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
