// Timelines are kept as JSON text and are put into the answer as they are.
#include "viewing/SessionJson.hpp"

#include <map>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "base/JsonText.hpp"
#include "store/ChunkPlaces.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

Json summaryJson(const SessionSummary& summary) {
    const Session& session = summary.session;
    const SignalCounts& counts = summary.counts;
    return {{"id", session.id},
            {"brandId", session.brandId},
            {"projectId", session.projectId},
            {"state", session.closedMillis ? "closed" : "open"},
            {"startMillis", session.startMillis},
            {"lastMillis", summary.lastMillis},
            {"durationMillis", replayMillis(summary)},
            {"device", {{"model", summary.deviceModel}, {"system", summary.deviceSystem}}},
            {"screens", summary.screens},
            {"counts",
             {{"taps", counts.taps},
              {"rageTaps", counts.rageTaps},
              {"deadTaps", counts.deadTaps},
              {"errorTaps", counts.errorTaps}}},
            {"chunks", summary.chunks},
            {"missingChunks", summary.missingChunks},
            {"bytes", summary.bytes}};
}

// What the timeline says once or seldom: the window's size and the device's data; the last word counts.
struct Facts {
    Json window = nullptr;
    std::map<std::string, std::string> metadata;
};

void take(const Json& event, Facts& facts) {
    const auto type = event.value("type", "");
    if (type == "WindowDimensions") {
        const auto& details = event.at("eventDetails");
        facts.window = {{"widthPx", details.at("windowWidthPx")}, {"heightPx", details.at("windowHeightPx")}};
    } else if (type == "MetadataCaptured") {
        for (const auto& entry : event.at("eventDetails").at("metadata")) {
            facts.metadata[entry.value("metadataId", "")] = entry.value("metadataValue", "");
        }
    }
}

Facts factsOf(const std::vector<Chunk>& chunks) {
    Facts facts;
    for (const auto& chunk : chunks) {
        // Few chunks hold any; the others need not be parsed.
        const std::string_view text = chunk.timeline;
        if (text.find("WindowDimensions") == std::string_view::npos &&
            text.find("MetadataCaptured") == std::string_view::npos) {
            continue;
        }
        if (const auto events = parseJson(text, {.bytes = text.size()})) {
            for (const auto& event : *events) {
                take(event, facts);
            }
        }
    }
    return facts;
}

Json metadataJson(const Facts& facts) {
    Json list = Json::array();
    for (const auto& [id, value] : facts.metadata) {
        list.push_back({{"id", id}, {"value", value}});
    }
    return list;
}

Json chunksJson(const SessionContents& contents) {
    Json list = Json::array();
    const auto places = chunkPlaces(contents.chunks);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto& chunk = contents.chunks[i];
        list.push_back({{"number", chunk.number},
                        {"atMillis", places[i]},
                        {"durationMillis", chunk.durationMillis},
                        {"frames", chunk.frames},
                        {"bytes", chunk.bytes},
                        {"endMillis", chunk.endMillis},
                        {"receivedMillis", chunk.receivedMillis},
                        {"url", "/api/sessions/" + contents.summary.session.id + "/chunks/" +
                                    std::to_string(chunk.number) + ".mp4"}});
    }
    return list;
}

// A member that the line's JSON has as text, taken out of it.
std::string taken(Json& fields, const char* key) {
    const auto found = fields.find(key);
    if (found == fields.end() || !found->is_string()) {
        return {};
    }
    auto text = found->get<std::string>();
    fields.erase(found);
    return text;
}

Json logJson(const LogLine& line) {
    auto parsed = parseJson(line.message, {.bytes = line.message.size()});
    const bool object = parsed && parsed->is_object();
    Json fields = object ? std::move(*parsed) : Json::object();
    // Clients put no time into their lines.
    Json json{{"atMillis", nullptr}, {"receivedMillis", line.receivedMillis}, {"level", line.levelName}};
    json["tag"] = taken(fields, "logTag");
    json["message"] = object ? taken(fields, "logMessage") : line.message;
    json["fields"] = std::move(fields);
    return json;
}

Json logsJson(const std::vector<LogLine>& lines) {
    Json list = Json::array();
    for (const auto& line : lines) {
        list.push_back(logJson(line));
    }
    return list;
}

}  // namespace

std::string pageJson(const SessionPage& page) {
    Json sessions = Json::array();
    for (const auto& summary : page.sessions) {
        sessions.push_back(summaryJson(summary));
    }
    return jsonText({{"sessions", sessions},
                     {"next", page.next ? Json(std::to_string(*page.next)) : Json(nullptr)},
                     {"total", page.total ? Json(*page.total) : Json(nullptr)}});
}

std::string facetsJson(const Facets& facets) {
    return jsonText({{"projects", facets.projects}, {"screens", facets.screens}});
}

std::string timelineJson(const SessionContents& contents) {
    std::string text = "[";
    for (const auto& chunk : contents.chunks) {
        const auto events = std::string_view(chunk.timeline).substr(1, chunk.timeline.size() - 2);
        text += events.empty() || text.size() == 1 ? "" : ",";
        text += events;
    }
    return text + "]";
}

std::string replayJson(const SessionContents& contents) {
    const auto facts = factsOf(contents.chunks);
    auto session = summaryJson(contents.summary);
    session["window"] = facts.window;
    return R"({"session":)" + jsonText(session) + R"(,"metadata":)" + jsonText(metadataJson(facts)) +
           R"(,"chunks":)" + jsonText(chunksJson(contents)) + R"(,"timeline":)" + timelineJson(contents) +
           R"(,"logs":)" + jsonText(logsJson(contents.logLines)) + "}";
}

}  // namespace mireth::receiver
