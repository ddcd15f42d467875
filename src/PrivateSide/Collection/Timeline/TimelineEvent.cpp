#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"

#include <array>
#include <locale>
#include <sstream>
#include <utility>

#include "PrivateSide/Collection/Timeline/EventData.hpp"

namespace mireth {

namespace {

constexpr std::array<std::pair<EventName, std::string_view>, 7> eventNames{{
    {EventName::chunkEndMarker, "ChunkEndMarker"},
    {EventName::signalCaptured, "SignalCaptured"},
    {EventName::sessionStartMarker, "SessionStartMarker"},
    {EventName::windowDimensions, "WindowDimensions"},
    {EventName::userInteraction, "UserInteraction"},
    {EventName::metadataCaptured, "MetadataCaptured"},
    {EventName::screenChange, "ScreenChange"},
}};

std::ostream& operator<<(std::ostream& out, const EventTarget& target) {
    return out << '(' << target.xNormalizedTo1 << ", " << target.yNormalizedTo1 << ") at ("
               << target.xOriginalPx << ", " << target.yOriginalPx << ") px";
}

struct DescribeDetails {
    std::ostringstream& out;

    void operator()(const SignalCapturedDetails& details) const {
        out << details.signalId << ' ' << details.target;
        if (details.errorMessage) {
            out << ", error: " << *details.errorMessage;
        }
    }
    void operator()(const InteractionCapturedDetails& details) const {
        out << details.interactionId << ' ' << details.target;
    }
    void operator()(const WindowDimensionsDetails& details) const {
        out << details.windowWidthPx << " x " << details.windowHeightPx << " px";
    }
    void operator()(const MetadataCapturedDetails& details) const {
        const char* separator = "";
        for (const auto& entry : details.metadata) {
            out << std::exchange(separator, ", ") << rawValue(entry.metadataId) << ": "
                << entry.metadataValue;
        }
    }
    void operator()(const ScreenChangeDetails& details) const {
        out << rawValue(details.changeType) << " (" << rawValue(details.detectionType) << ")";
        const char* separator = ": ";
        for (const auto& element : details.screenHierarchy) {
            out << std::exchange(separator, " > ") << element.screenName;
        }
    }
};

}  // namespace

std::string_view rawValue(EventName name) noexcept {
    for (const auto& [candidate, text] : eventNames) {
        if (candidate == name) {
            return text;
        }
    }
    return "";
}

std::optional<EventName> eventNameFromRawValue(std::string_view text) noexcept {
    for (const auto& [name, candidate] : eventNames) {
        if (candidate == text) {
            return name;
        }
    }
    return std::nullopt;
}

std::string_view rawValue(SrMetadataType type) noexcept {
    switch (type) {
        case SrMetadataType::SdkVersion:
            return "SdkVersion";
        case SrMetadataType::AppVersion:
            return "AppVersion";
        case SrMetadataType::DeviceId:
            return "DeviceId";
        case SrMetadataType::DeviceModel:
            return "DeviceModel";
        case SrMetadataType::Platform:
            return "Platform";
        case SrMetadataType::OperatingSystem:
            return "OperatingSystem";
        case SrMetadataType::DeviceCodename:
            return "DeviceCodename";
    }
    return "";
}

std::string_view rawValue(SrScreenChangeType type) noexcept {
    return type == SrScreenChangeType::appear ? "appear" : "disappear";
}

std::string_view rawValue(SrScreenChangeDetectionType type) noexcept {
    return type == SrScreenChangeDetectionType::automatic ? "auto" : "manual";
}

std::string debugInfo(const EventDetails& details) {
    std::ostringstream out;
    out.imbue(std::locale::classic());  // whatever the host has set
    std::visit(DescribeDetails{out}, details);
    return out.str();
}

std::string_view key(SessionSignalType type) noexcept {
    switch (type) {
        case SessionSignalType::deadTap:
            return "DeadTap";
        case SessionSignalType::rageTap:
            return "RageTap";
        case SessionSignalType::errorTap:
            return "ErrorTap";
    }
    return "";
}

std::string_view debugInfo(SessionSignalType type) noexcept {
    switch (type) {
        case SessionSignalType::deadTap:
            return "Dead Click Detected";
        case SessionSignalType::rageTap:
            return "Rage Click Detected";
        case SessionSignalType::errorTap:
            return "Error Click Detected";
    }
    return "";
}

std::string_view key(SessionInteractionType) noexcept {
    return "Tap";
}

std::string_view debugInfo(SessionInteractionType) noexcept {
    return "Tap Click Detected";
}

std::string_view key(const EventType& type) noexcept {
    return std::visit([](auto carried) { return key(carried); }, type);
}

}  // namespace mireth
