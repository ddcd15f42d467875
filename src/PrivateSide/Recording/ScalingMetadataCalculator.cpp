#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"

#include <algorithm>

namespace mireth {

namespace {

double marginAround(double length, double available) {
    return length < available ? (available - length) / 2 : 0;
}

}  // namespace

ScalingMetadata ScalingMetadataCalculator::calculateScalingMetadata(Size imageOriginalSize, Size targetSize) {
    if (imageOriginalSize.width == 0 || imageOriginalSize.height == 0) {
        return ScalingMetadata::zero();
    }
    const double scale =
        std::min(targetSize.width / imageOriginalSize.width, targetSize.height / imageOriginalSize.height);
    const Size scaledSize{imageOriginalSize.width * scale, imageOriginalSize.height * scale};
    const double left = marginAround(scaledSize.width, targetSize.width);
    const double top = marginAround(scaledSize.height, targetSize.height);

    ScalingMetadata metadata;
    metadata.margin = {left, top, left, top};
    metadata.originalSize = imageOriginalSize;
    metadata.scaledSize = scaledSize;
    metadata.targetFrameSize = targetSize;
    return metadata;
}

}  // namespace mireth
