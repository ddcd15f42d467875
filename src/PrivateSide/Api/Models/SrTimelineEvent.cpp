#include "PrivateSide/Api/Models/SrTimelineEvent.hpp"

#include <nlohmann/json.hpp>
#include <string>
#include <variant>

#include "PrivateSide/Api/JSONCodec.hpp"

namespace mireth {

namespace {

/// The only value of SrWindowMode.
constexpr const char* regularWindowMode = "Regular";

Json targetJson(const EventTarget& target) {
    Json json = Json::object();
    json["xNormalizedTo1"] = jsonNumber(target.xNormalizedTo1);
    json["yNormalizedTo1"] = jsonNumber(target.yNormalizedTo1);
    json["xOriginalPx"] = jsonNumber(target.xOriginalPx);
    json["yOriginalPx"] = jsonNumber(target.yOriginalPx);
    return json;
}

struct DetailsJson {
    Json operator()(const SignalCapturedDetails& details) const {
        Json json = Json::object();
        json["signalId"] = details.signalId;
        json["target"] = targetJson(details.target);
        if (details.errorMessage) {
            json["error"] = Json::object();
            json["error"]["message"] = *details.errorMessage;
        }
        return json;
    }

    Json operator()(const InteractionCapturedDetails& details) const {
        Json json = Json::object();
        json["interactionId"] = details.interactionId;
        json["target"] = targetJson(details.target);
        return json;
    }

    Json operator()(const WindowDimensionsDetails& details) const {
        Json json = Json::object();
        json["windowWidthPx"] = jsonNumber(details.windowWidthPx);
        json["windowHeightPx"] = jsonNumber(details.windowHeightPx);
        json["mode"] = regularWindowMode;
        return json;
    }

    Json operator()(const MetadataCapturedDetails& details) const {
        Json list = Json::array();
        for (const auto& entry : details.metadata) {
            Json element = Json::object();
            element["metadataId"] = std::string(rawValue(entry.metadataId));
            element["metadataValue"] = entry.metadataValue;
            list.push_back(std::move(element));
        }
        Json json = Json::object();
        json["metadata"] = std::move(list);
        return json;
    }

    Json operator()(const ScreenChangeDetails& details) const {
        Json json = Json::object();
        json["changeType"] = std::string(rawValue(details.changeType));
        json["detectionType"] = std::string(rawValue(details.detectionType));
        Json list = Json::array();
        for (const auto& element : details.screenHierarchy) {
            Json level = Json::object();
            level["depth"] = element.depth;
            level["screenName"] = element.screenName;
            level["screenType"] = element.screenType;
            list.push_back(std::move(level));
        }
        json["screenHierarchy"] = std::move(list);
        return json;
    }
};

}  // namespace

SrTimelineEvent toSrTimelineEvent(const TimelineEvent& event, std::int64_t chunkNumber) {
    return {event.timestamp, event.name, event.details, chunkNumber};
}

Json toJson(const SrTimelineEvent& event) {
    Json json = Json::object();
    json["timestamp"] = event.timestampInMilliseconds;
    json["type"] = std::string(rawValue(event.type));
    if (event.eventDetails) {
        json["eventDetails"] = std::visit(DetailsJson{}, *event.eventDetails);
    }
    json["chunkNumber"] = event.chunkNumber;
    return json;
}

Json toJson(const std::vector<SrTimelineEvent>& events) {
    Json list = Json::array();
    for (const auto& event : events) {
        list.push_back(toJson(event));
    }
    return list;
}

}  // namespace mireth
