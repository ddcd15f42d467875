#include "PrivateSide/Collection/Timeline/TimelineTransformer.hpp"

#include <limits>
#include <string>

#include "PrivateSide/Collection/Timeline/SignalData.hpp"

namespace mireth {

namespace {

struct NormalizedCoordinates {
    float x = 0;
    float y = 0;
};

/// The place of a window point in the video frame, from 0 to 1 inside it. Not clamped: a point outside stays
/// outside, and a zero size yields an infinity or not-a-number, which the encoding then refuses.
NormalizedCoordinates normalizeToOne(Target target, const ScalingMetadata& scaling) {
    static_assert(std::numeric_limits<double>::is_iec559);
    const double xScaled =
        static_cast<double>(target.x) * scaling.scaledSize.width / scaling.originalSize.width;
    const double yScaled =
        static_cast<double>(target.y) * scaling.scaledSize.height / scaling.originalSize.height;
    const double xInFrame = xScaled + scaling.margin.left;
    const double yInFrame = yScaled + scaling.margin.top;
    return {static_cast<float>(xInFrame / scaling.targetFrameSize.width),
            static_cast<float>(yInFrame / scaling.targetFrameSize.height)};
}

}  // namespace

std::optional<TimelineEvent> TimelineTransformer::transform(const EventData& eventData,
                                                            const ScalingMetadata& scalingMetadata) const {
    if (const auto* signal = dynamic_cast<const SessionSignalData*>(&eventData)) {
        return createSignalTimelineEvent(*signal, scalingMetadata);
    }
    if (const auto* interaction = dynamic_cast<const SessionInteractionData*>(&eventData)) {
        return createInteractionTimelineEvent(*interaction, scalingMetadata);
    }
    return std::nullopt;
}

TimelineEvent TimelineTransformer::createSignalTimelineEvent(const SessionSignalData& data,
                                                             const ScalingMetadata& scalingMetadata) const {
    SignalCapturedDetails details;
    details.signalId = key(data.type());
    details.target = createEventTarget(data.target(), scalingMetadata);
    if (const auto* errorTap = dynamic_cast<const ErrorTapSignalData*>(&data)) {
        details.errorMessage = errorTap->message();
    }
    return {EventName::signalCaptured, data.timestamp(), std::move(details)};
}

TimelineEvent TimelineTransformer::createInteractionTimelineEvent(
    const SessionInteractionData& data, const ScalingMetadata& scalingMetadata) const {
    InteractionCapturedDetails details;
    details.interactionId = key(data.type());
    details.target = createEventTarget(data.target(), scalingMetadata);
    return {EventName::userInteraction, data.timestamp(), std::move(details)};
}

EventTarget TimelineTransformer::createEventTarget(Target originalTarget,
                                                   const ScalingMetadata& scalingMetadata) const {
    const auto normalized = normalizeToOne(originalTarget, scalingMetadata);
    return {normalized.x, normalized.y, dimensionConverter_.convertToPixel(originalTarget.x),
            dimensionConverter_.convertToPixel(originalTarget.y)};
}

}  // namespace mireth
