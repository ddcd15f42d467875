// The shape of every kind of timeline event, written down as small checks.
#include "wire/TimelineValidator.hpp"

#include <algorithm>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "base/JsonText.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t mostEvents = 50'000;

// Carries a complaint out of the nested checks; never leaves this file.
struct Complaint : std::runtime_error {
    using std::runtime_error::runtime_error;
};

using Names = std::initializer_list<std::string_view>;

void requireKeys(const Json& object, const std::string& where, Names required, Names optional = {}) {
    if (!object.is_object()) {
        throw Complaint(where + " is not an object");
    }
    for (const auto key : required) {
        if (!object.contains(key)) {
            throw Complaint(where + " lacks \"" + std::string(key) + "\"");
        }
    }
    for (const auto& [key, value] : object.items()) {
        const auto isKey = [&name = key](std::string_view known) { return name == known; };
        if (std::ranges::none_of(required, isKey) && std::ranges::none_of(optional, isKey)) {
            throw Complaint(std::string(where).append(" has the unknown key \"").append(key).append("\""));
        }
    }
}

std::string textOf(const Json& object, const char* key) {
    const auto& value = object.at(key);
    if (!value.is_string()) {
        throw Complaint("\"" + std::string(key) + "\" is not a string");
    }
    return value.get<std::string>();
}

void requireOneOf(const Json& object, const char* key, Names allowed) {
    const auto text = textOf(object, key);
    if (std::ranges::find(allowed, std::string_view(text)) == allowed.end()) {
        throw Complaint("\"" + std::string(key) + "\" has the unknown value \"" + text + "\"");
    }
}

// Beyond 2^63 a JSON integer is unsigned to the parser and beyond 2^64 a float: neither is a signed 64-bit
// one.
std::int64_t wholeOf(const Json& object, const char* key) {
    const auto& value = object.at(key);
    const bool tooLarge = value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX;
    if (!value.is_number_integer() || tooLarge) {
        throw Complaint("\"" + std::string(key) + "\" is not a 64-bit integer");
    }
    return value.get<std::int64_t>();
}

void requireNumber(const Json& object, const char* key) {
    if (!object.at(key).is_number()) {
        throw Complaint("\"" + std::string(key) + "\" is not a number");
    }
}

const Json& listOf(const Json& object, const char* key) {
    const auto& value = object.at(key);
    if (!value.is_array()) {
        throw Complaint("\"" + std::string(key) + "\" is not an array");
    }
    return value;
}

void checkTarget(const Json& details) {
    const auto& target = details.at("target");
    requireKeys(target, "\"target\"", {"xNormalizedTo1", "yNormalizedTo1", "xOriginalPx", "yOriginalPx"});
    for (const auto* const key : {"xNormalizedTo1", "yNormalizedTo1", "xOriginalPx", "yOriginalPx"}) {
        requireNumber(target, key);
    }
}

void checkSignal(const Json& details) {
    requireKeys(details, "\"eventDetails\"", {"signalId", "target"}, {"error"});
    requireOneOf(details, "signalId", {"DeadTap", "RageTap", "ErrorTap"});
    checkTarget(details);
    if (details.contains("error")) {
        requireKeys(details.at("error"), "\"error\"", {"message"});
        textOf(details.at("error"), "message");
    }
}

void checkInteraction(const Json& details) {
    requireKeys(details, "\"eventDetails\"", {"interactionId", "target"});
    requireOneOf(details, "interactionId", {"Tap"});
    checkTarget(details);
}

void checkWindow(const Json& details) {
    requireKeys(details, "\"eventDetails\"", {"windowWidthPx", "windowHeightPx", "mode"});
    requireNumber(details, "windowWidthPx");
    requireNumber(details, "windowHeightPx");
    requireOneOf(details, "mode", {"Regular"});
}

void checkMetadata(const Json& details) {
    requireKeys(details, "\"eventDetails\"", {"metadata"});
    for (const auto& entry : listOf(details, "metadata")) {
        requireKeys(entry, "an entry of \"metadata\"", {"metadataId", "metadataValue"});
        requireOneOf(entry, "metadataId",
                     {"SdkVersion", "AppVersion", "DeviceId", "DeviceModel", "Platform", "OperatingSystem",
                      "DeviceCodename"});
        textOf(entry, "metadataValue");
    }
}

void checkScreenChange(const Json& details) {
    requireKeys(details, "\"eventDetails\"", {"changeType", "detectionType", "screenHierarchy"});
    requireOneOf(details, "changeType", {"appear", "disappear"});
    requireOneOf(details, "detectionType", {"auto", "manual"});
    for (const auto& screen : listOf(details, "screenHierarchy")) {
        requireKeys(screen, "an entry of \"screenHierarchy\"", {"depth", "screenName", "screenType"});
        wholeOf(screen, "depth");
        textOf(screen, "screenName");
        textOf(screen, "screenType");
    }
}

// The check of a type's details; null for the two markers, which have none.
using DetailsCheck = void (*)(const Json&);

DetailsCheck detailsCheckOf(const std::string& type) {
    struct Kind {
        std::string_view type;
        DetailsCheck check;
    };
    constexpr Kind kinds[] = {
        {"ChunkEndMarker", nullptr},         {"SessionStartMarker", nullptr},
        {"SignalCaptured", checkSignal},     {"UserInteraction", checkInteraction},
        {"WindowDimensions", checkWindow},   {"MetadataCaptured", checkMetadata},
        {"ScreenChange", checkScreenChange},
    };
    for (const auto& kind : kinds) {
        if (kind.type == type) {
            return kind.check;
        }
    }
    throw Complaint("\"type\" has the unknown value \"" + type + "\"");
}

TimelineEvent eventOf(const Json& json, std::int64_t chunkNumber) {
    requireKeys(json, "it", {"timestamp", "type", "chunkNumber"}, {"eventDetails"});
    TimelineEvent event{.timestamp = wholeOf(json, "timestamp"), .type = textOf(json, "type"), .details = {}};
    if (wholeOf(json, "chunkNumber") != chunkNumber) {
        throw Complaint("\"chunkNumber\" is not the chunk's, " + std::to_string(chunkNumber));
    }
    const auto check = detailsCheckOf(event.type);
    const auto details = json.find("eventDetails");
    if ((check != nullptr) != (details != json.end())) {
        throw Complaint("an event of type \"" + event.type + "\" " +
                        (check != nullptr ? "lacks" : "must not have") + " \"eventDetails\"");
    }
    if (check != nullptr) {
        check(*details);
        event.details = jsonText(*details);
    }
    return event;
}

std::size_t countOf(std::string_view elements) {
    std::size_t count = 0;
    while (nextElement(elements)) {
        ++count;
    }
    return count;
}

}  // namespace

std::expected<std::vector<TimelineEvent>, std::string> validateTimeline(std::string_view text,
                                                                        std::int64_t chunkNumber) {
    if (const auto complaint = jsonComplaint(text, {.bytes = longestTimeline}); !complaint.empty()) {
        return std::unexpected("the timeline is " + complaint);
    }
    auto elements = elementsOf(text);
    if (!elements || countOf(*elements) > mostEvents) {
        return std::unexpected("the timeline is not an array of at most " + std::to_string(mostEvents) +
                               " events");
    }
    std::vector<TimelineEvent> events;
    // One event at a time: built whole, a timeline takes many times its length.
    while (const auto element = nextElement(*elements)) {
        try {
            events.push_back(eventOf(Json::parse(*element), chunkNumber));
        } catch (const std::exception& complaint) {
            return std::unexpected("timeline event " + std::to_string(events.size()) + ": " +
                                   complaint.what());
        }
    }
    return events;
}

}  // namespace mireth::receiver
