// The smallest details that pass the receiver's checks.
#include "support/Timeline.hpp"

#include <nlohmann/json.hpp>

#include "store/TimelineText.hpp"

namespace mireth::receiver::test {
namespace {

using Json = nlohmann::ordered_json;

const Json target{{"xNormalizedTo1", 0.5}, {"yNormalizedTo1", 0.5}, {"xOriginalPx", 1}, {"yOriginalPx", 2}};

}  // namespace

TimelineEvent tapEvent(std::int64_t timestamp) {
    return {timestamp, "UserInteraction", Json{{"interactionId", "Tap"}, {"target", target}}.dump()};
}

TimelineEvent signalEvent(const std::string& id, const std::string& message) {
    Json details{{"signalId", id}, {"target", target}};
    if (!message.empty()) {
        details["error"] = {{"message", message}};
    }
    return {1000, "SignalCaptured", details.dump()};
}

TimelineEvent screenEvent(const std::string& name, const std::string& change) {
    const Json screen{{"depth", 0}, {"screenName", name}, {"screenType", "Screen"}};
    return {1'700'000'000'000, "ScreenChange",
            Json{{"changeType", change}, {"detectionType", "auto"}, {"screenHierarchy", {screen}}}.dump()};
}

TimelineEvent metadataEvent(const std::string& id, const std::string& value) {
    const Json entry{{"metadataId", id}, {"metadataValue", value}};
    return {1'700'000'000'000, "MetadataCaptured", Json{{"metadata", {entry}}}.dump()};
}

Chunk chunkOf(std::int64_t number, const std::vector<TimelineEvent>& events, std::int64_t receivedMillis) {
    return {.number = number,
            .endMillis = receivedMillis,
            .receivedMillis = receivedMillis,
            .bytes = 0,
            .frames = 20,
            .durationMillis = 10'000,
            .events = static_cast<std::int64_t>(events.size()),
            .timeline = timelineText(events, number)};
}

}  // namespace mireth::receiver::test
