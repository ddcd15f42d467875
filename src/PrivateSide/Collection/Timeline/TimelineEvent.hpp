// One event of a session's timeline, in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace mireth {

enum class EventName {
    chunkEndMarker,
    signalCaptured,
    sessionStartMarker,
    windowDimensions,
    userInteraction,
    metadataCaptured,
    screenChange
};

/// The name on the wire, such as "ChunkEndMarker".
std::string_view rawValue(EventName name) noexcept;
std::optional<EventName> eventNameFromRawValue(std::string_view text) noexcept;

/// A touch point in the video frame (0 to 1 inside it) and in pixels of the screen.
struct EventTarget {
    float xNormalizedTo1 = 0;
    float yNormalizedTo1 = 0;
    float xOriginalPx = 0;
    float yOriginalPx = 0;
    bool operator==(const EventTarget&) const = default;
};

enum class SrMetadataType {
    SdkVersion,
    AppVersion,
    DeviceId,
    DeviceModel,
    Platform,
    OperatingSystem,
    DeviceCodename
};

/// The case's name.
std::string_view rawValue(SrMetadataType type) noexcept;

struct SrMetadata {
    SrMetadataType metadataId = SrMetadataType::SdkVersion;
    std::string metadataValue;
    bool operator==(const SrMetadata&) const = default;
};

enum class SrScreenChangeType { appear, disappear };
/// "appear" or "disappear".
std::string_view rawValue(SrScreenChangeType type) noexcept;

enum class SrScreenChangeDetectionType { automatic, manual };
/// "auto" or "manual".
std::string_view rawValue(SrScreenChangeDetectionType type) noexcept;

struct SrScreenHierarchyElement {
    /// The position in the hierarchy, outermost 0.
    std::int64_t depth = 0;
    std::string screenName;
    std::string screenType = "Screen";
    bool operator==(const SrScreenHierarchyElement&) const = default;
};

struct SignalCapturedDetails {
    std::string signalId;
    EventTarget target;
    /// Only error taps carry one.
    std::optional<std::string> errorMessage;
    bool operator==(const SignalCapturedDetails&) const = default;
};

struct InteractionCapturedDetails {
    std::string interactionId;
    EventTarget target;
    bool operator==(const InteractionCapturedDetails&) const = default;
};

struct WindowDimensionsDetails {
    double windowWidthPx = 0;
    double windowHeightPx = 0;
    bool operator==(const WindowDimensionsDetails&) const = default;
};

struct MetadataCapturedDetails {
    std::vector<SrMetadata> metadata;
    bool operator==(const MetadataCapturedDetails&) const = default;
};

struct ScreenChangeDetails {
    SrScreenChangeType changeType = SrScreenChangeType::appear;
    SrScreenChangeDetectionType detectionType = SrScreenChangeDetectionType::manual;
    std::vector<SrScreenHierarchyElement> screenHierarchy;
    bool operator==(const ScreenChangeDetails&) const = default;
};

using EventDetails = std::variant<SignalCapturedDetails, InteractionCapturedDetails, WindowDimensionsDetails,
                                  MetadataCapturedDetails, ScreenChangeDetails>;

/// The details in words, for log lines.
std::string debugInfo(const EventDetails& details);

struct TimelineEvent {
    EventName name = EventName::chunkEndMarker;
    /// Milliseconds. Touch-derived events carry the uptime clock, all others the wall clock since the Unix
    /// epoch.
    std::int64_t timestamp = 0;
    std::optional<EventDetails> details;
    bool operator==(const TimelineEvent&) const = default;
};

}  // namespace mireth
