// Timelines are kept as JSON text and go into the answer as they are.
#include "viewing/SessionJson.hpp"

#include <nlohmann/json.hpp>
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
            {"durationMillis", summary.durationMillis},
            {"device", {{"model", summary.deviceModel}, {"system", summary.deviceSystem}}},
            {"screens", summary.screens},
            {"screenCount", summary.screenCount},
            {"counts",
             {{"taps", counts.taps},
              {"rageTaps", counts.rageTaps},
              {"deadTaps", counts.deadTaps},
              {"errorTaps", counts.errorTaps}}},
            {"chunks", summary.chunks},
            {"missingChunks", summary.missingChunks},
            {"bytes", summary.bytes}};
}

Json metadataJson(const SessionFacts& facts) {
    Json list = Json::array();
    for (const auto& [id, value] : facts.metadata) {
        list.push_back({{"id", id}, {"value", value}});
    }
    return list;
}

Json chunksJson(const SessionContents& outline) {
    Json list = Json::array();
    for (const auto& chunk : outline.chunks) {
        list.push_back({{"number", chunk.number},
                        {"atMillis", chunkPlace(chunk.number)},
                        {"durationMillis", chunk.durationMillis},
                        {"frames", chunk.frames},
                        {"bytes", chunk.bytes},
                        {"endMillis", chunk.endMillis},
                        {"receivedMillis", chunk.receivedMillis},
                        {"url", "/api/sessions/" + outline.summary.session.id + "/chunks/" +
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

// Line by line: each may take many times its length while it is built.
std::string logsText(const std::vector<LogLine>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += (text.empty() ? "[" : ",") + jsonText(logJson(line));
    }
    return text.empty() ? "[]" : text + "]";
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
    return jsonText(
        {{"projects", facets.projects}, {"screens", facets.screens}, {"moreScreens", facets.moreScreens}});
}

ReplayJson replayJson(const SessionContents& outline, const SessionFacts& facts) {
    auto session = jsonText(summaryJson(outline.summary));
    session.pop_back();
    return {.before = R"({"session":)" + session + R"(,"window":)" + facts.window + R"(},"metadata":)" +
                      jsonText(metadataJson(facts)) + R"(,"chunks":)" + jsonText(chunksJson(outline)) +
                      R"(,"timeline":)",
            .after = R"(,"logs":)" + logsText(outline.logLines) + "}"};
}

}  // namespace mireth::receiver
