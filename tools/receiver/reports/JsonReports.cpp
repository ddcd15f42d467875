// The JSON forms of `list` and `show`.
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>

#include "base/Environment.hpp"
#include "base/JsonText.hpp"
#include "reports/SessionReports.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

Json summaryJson(const SessionSummary& summary) {
    const Session& session = summary.session;
    return {{"id", session.id},
            {"brandId", session.brandId},
            {"brandDc", session.brandDc},
            {"projectId", session.projectId},
            {"isTestSession", session.isTestSession},
            {"state", session.closedMillis ? "closed" : "open"},
            {"start", isoTime(session.startMillis)},
            {"startMillis", session.startMillis},
            {"closedMillis", session.closedMillis ? Json(*session.closedMillis) : Json(nullptr)},
            {"chunks", summary.chunks},
            {"frames", summary.frames},
            {"bytes", summary.bytes},
            {"durationMillis", summary.durationMillis},
            {"events", summary.events},
            {"logLines", summary.logLines}};
}

Json logLineJson(const LogLine& line) {
    return {{"receivedMillis", line.receivedMillis}, {"level", line.levelName}, {"message", line.message}};
}

Json logLinesJson(const std::vector<LogLine>& lines) {
    Json list = Json::array();
    for (const auto& line : lines) {
        list.push_back(logLineJson(line));
    }
    return list;
}

Json chunkJson(const Chunk& chunk, const VideoPlaces& videos) {
    return {{"number", chunk.number},       {"frames", chunk.frames},
            {"bytes", chunk.bytes},         {"durationMillis", chunk.durationMillis},
            {"endMillis", chunk.endMillis}, {"receivedMillis", chunk.receivedMillis},
            {"events", chunk.events},       {"path", videos(chunk.video.key)}};
}

// As it was uploaded.
Json timelineJson(const Chunk& chunk) {
    const auto parsed = parseJson(chunk.timeline, {.bytes = chunk.timeline.size()});
    return parsed ? *parsed : Json::array();
}

}  // namespace

void writeListJson(std::ostream& out, const Inventory& inventory) {
    Json sessions = Json::array();
    for (const auto& summary : inventory.sessions) {
        sessions.push_back(summaryJson(summary));
    }
    out << jsonText({{"sessions", sessions}, {"logLines", logLinesJson(inventory.strayLogLines)}}) << '\n';
}

void writeShowJson(std::ostream& out, const SessionContents& contents, const VideoPlaces& videos) {
    Json chunks = Json::array();
    Json timeline = Json::array();
    std::map<std::string, std::int64_t> kinds;
    std::map<std::string, std::int64_t> signals;
    for (const auto& chunk : contents.chunks) {
        chunks.push_back(chunkJson(chunk, videos));
        for (const auto& event : timelineJson(chunk)) {
            const auto type = event.value("type", "");
            ++kinds[type];
            if (type == "SignalCaptured") {
                ++signals[event.at("eventDetails").value("signalId", "")];
            }
            timeline.push_back(event);
        }
    }
    out << jsonText({{"session", summaryJson(contents.summary)},
                     {"chunks", chunks},
                     {"eventsByKind", kinds},
                     {"signalsByKind", signals},
                     {"timeline", timeline},
                     {"logLines", logLinesJson(contents.logLines)}})
        << '\n';
}

}  // namespace mireth::receiver
