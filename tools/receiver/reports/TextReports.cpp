// The text forms of `list` and `show`.
#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "base/Environment.hpp"
#include "base/JsonText.hpp"
#include "base/PrintableText.hpp"
#include "reports/SessionReports.hpp"
#include "reports/TextTable.hpp"

namespace mireth::receiver {
namespace {

std::string secondsText(std::int64_t millis) {
    char text[40];
    std::snprintf(text, sizeof text, "%.3f s", static_cast<double>(millis) / 1000);
    return text;
}

std::string bytesText(std::int64_t bytes) {
    if (bytes < 1000) {
        return std::to_string(bytes) + " B";
    }
    char text[40];
    const auto value = static_cast<double>(bytes);
    std::snprintf(text, sizeof text, bytes < 1'000'000 ? "%.1f kB" : "%.1f MB",
                  bytes < 1'000'000 ? value / 1e3 : value / 1e6);
    return text;
}

const char* stateOf(const Session& session) {
    return session.closedMillis ? "closed" : "open";
}

void writeLogLines(std::ostream& out, const std::vector<LogLine>& lines) {
    TextTable table({"received", "level", "message"});
    for (const auto& line : lines) {
        table.add({isoTime(line.receivedMillis), line.levelName, line.message});
    }
    table.write(out);
}

void writeChunks(std::ostream& out, const std::vector<Chunk>& chunks, const VideoPlaces& videos) {
    TextTable table({"chunk>", "frames>", "bytes>", "duration>", "events>", "video"});
    for (const auto& chunk : chunks) {
        table.add({std::to_string(chunk.number), std::to_string(chunk.frames), bytesText(chunk.bytes),
                   secondsText(chunk.durationMillis), std::to_string(chunk.events), videos(chunk.video.key)});
    }
    table.write(out);
}

nlohmann::ordered_json eventsOf(const Chunk& chunk) {
    return parseJson(chunk.timeline, {.bytes = chunk.timeline.size()})
        .value_or(nlohmann::ordered_json::array());
}

void writeKinds(std::ostream& out, const std::vector<Chunk>& chunks) {
    std::map<std::string, std::int64_t> kinds;
    for (const auto& chunk : chunks) {
        for (const auto& event : eventsOf(chunk)) {
            ++kinds[event.value("type", "")];
        }
    }
    TextTable table({"events of kind", "count>"});
    for (const auto& [kind, count] : kinds) {
        table.add({kind, std::to_string(count)});
    }
    table.write(out);
}

void writeTimeline(std::ostream& out, const std::vector<Chunk>& chunks) {
    TextTable table({"chunk>", "timestamp>", "event", "details"});
    for (const auto& chunk : chunks) {
        for (const auto& event : eventsOf(chunk)) {
            const auto details = event.find("eventDetails");
            table.add({std::to_string(chunk.number),
                       std::to_string(event.value("timestamp", std::int64_t{0})), event.value("type", ""),
                       details == event.end() ? "" : jsonText(*details)});
        }
    }
    table.write(out);
}

}  // namespace

void writeListText(std::ostream& out, const Inventory& inventory) {
    if (inventory.sessions.empty()) {
        out << "No sessions yet.\n";
    } else {
        TextTable table(
            {"session", "project", "start", "state", "chunks>", "frames>", "bytes>", "duration>"});
        for (const auto& each : inventory.sessions) {
            table.add({each.session.id, each.session.brandId + "/" + each.session.projectId,
                       isoTime(each.session.startMillis), stateOf(each.session), std::to_string(each.chunks),
                       std::to_string(each.frames), bytesText(each.bytes), secondsText(each.durationMillis)});
        }
        table.write(out);
    }
    if (!inventory.strayLogLines.empty()) {
        out << "\nLog lines without a known session:\n";
        writeLogLines(out, inventory.strayLogLines);
    }
}

void writeShowText(std::ostream& out, const SessionContents& contents, const VideoPlaces& videos) {
    const auto& summary = contents.summary;
    const auto& session = summary.session;
    TextTable head({"session", session.id});
    head.add({"project", session.brandId + "/" + session.projectId + " (" + session.brandDc + ")"});
    head.add({"start", isoTime(session.startMillis)});
    head.add({"state", session.closedMillis ? "closed " + isoTime(*session.closedMillis) : "open"});
    head.add({"video", std::to_string(summary.chunks) + " chunks, " + std::to_string(summary.frames) +
                           " frames, " + bytesText(summary.bytes) + ", " +
                           secondsText(summary.durationMillis)});
    head.write(out);
    if (!contents.chunks.empty()) {
        out << '\n';
        writeChunks(out, contents.chunks, videos);
    }
    if (summary.events > 0) {
        out << '\n';
        writeKinds(out, contents.chunks);
        out << '\n';
        writeTimeline(out, contents.chunks);
    }
    if (!contents.logLines.empty()) {
        out << '\n';
        writeLogLines(out, contents.logLines);
    }
}

}  // namespace mireth::receiver
