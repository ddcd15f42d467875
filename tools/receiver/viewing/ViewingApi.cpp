// Routing within the viewing API, and its answers.
#include "viewing/ViewingApi.hpp"

#include <charconv>
#include <utility>

#include "exchange/ByteRange.hpp"
#include "exchange/ErrorAnswer.hpp"
#include "exchange/SmallExchange.hpp"
#include "viewing/JoinedTimelines.hpp"
#include "viewing/SessionFacts.hpp"
#include "viewing/SessionJson.hpp"
#include "viewing/SessionQueryReader.hpp"

namespace mireth::receiver {
namespace {

// Part of every ETag: a receiver that answers in another form must not be taken for one that answers the
// same.
constexpr const char* form = "1";

constexpr const char* videoType = "video/mp4";

bool isGet(const RequestHead& head) {
    return head.method == "GET" || head.method == "HEAD";
}

std::string quoted(const std::string& tag) {
    return "\"" + std::string(form) + "-" + tag + "\"";
}

// The header may name several tags; ours hold no comma.
bool isKnown(const RequestHead& head, const std::string& etag) {
    return head.ifNoneMatch.find(etag) != std::string::npos || head.ifNoneMatch == "*";
}

// A session only ever grows, so these three tell whether it did.
std::string tagOf(const SessionSummary& summary) {
    return quoted(std::to_string(summary.chunks) + "-" + std::to_string(summary.logLines) +
                  (summary.session.closedMillis ? "-closed" : "-open"));
}

Answer notModified(const std::string& etag) {
    return {.status = 304, .headers = {{"ETag", etag}, {"Cache-Control", "private, no-cache"}}};
}

Answer tagged(std::string body, const std::string& etag) {
    return {.body = std::move(body), .headers = {{"ETag", etag}, {"Cache-Control", "private, no-cache"}}};
}

// "12.mp4"
std::optional<std::int64_t> chunkNumberIn(const std::string& name) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool whole = error == std::errc() && number >= 0 && std::string_view(end) == ".mp4";
    return whole ? std::optional(number) : std::nullopt;
}

FilePiece wholeText(std::shared_ptr<ByteSource> text) {
    const auto size = text->size();
    return {.file = std::move(text), .size = size, .compressible = true};
}

// The file, or the range of it that the request asks for.
Answer pieceOf(const RequestHead& head, std::shared_ptr<ByteSource> file) {
    const auto size = file->size();
    const auto range = byteRange(head.range, size);
    if (!range) {
        auto answer = errorAnswer(416, "the video has no such bytes");
        answer.headers = {{"Content-Range", "bytes */" + std::to_string(size)}};
        return answer;
    }
    Answer answer{.contentType = videoType,
                  .headers = {{"Accept-Ranges", "bytes"}},
                  .piece = FilePiece{.file = std::move(file), .offset = 0, .size = size}};
    if (*range) {
        const auto& [first, count] = **range;
        answer.status = 206;
        answer.piece->offset = first;
        answer.piece->size = count;
        answer.headers.emplace_back("Content-Range", "bytes " + std::to_string(first) + "-" +
                                                         std::to_string(first + count - 1) + "/" +
                                                         std::to_string(size));
    }
    return answer;
}

}  // namespace

Route ViewingApi::begin(const RequestHead& head, const RequestTarget& target) const {
    const auto& path = target.segments;
    const bool list = path.size() == 2 && path[1] == "sessions";
    return {.endpoint = list              ? "list"
                        : path.size() > 3 ? "video"
                                          : "replay",
            .exchange = std::make_unique<SmallExchange>(
                0, errorBody("a request to this address has no body"),
                [this, head, target](const std::string&) { return answer(head, target); })};
}

Answer ViewingApi::answer(const RequestHead& head, const RequestTarget& target) const {
    const auto& path = target.segments;
    if (path.size() == 2 && path[1] == "sessions") {
        return isGet(head) ? sessions(head, target) : wrongMethodAnswer("GET");
    }
    if (path.size() == 2 && path[1] == "facets") {
        return isGet(head) ? facets(head) : wrongMethodAnswer("GET");
    }
    if (path.size() >= 3 && path[1] == "sessions") {
        return ofSession(head, target);
    }
    return errorAnswer(404, "there is nothing at this address");
}

Answer ViewingApi::ofSession(const RequestHead& head, const RequestTarget& target) const {
    const auto& path = target.segments;
    const auto& id = path[2];
    if (path.size() == 3 && head.method == "DELETE") {
        return remove(id);
    }
    if (!isGet(head)) {
        return wrongMethodAnswer(path.size() == 3 ? "GET, DELETE" : "GET");
    }
    if (path.size() == 3) {
        return replay(head, id);
    }
    if (path.size() == 4 && path[3] == "timeline.json") {
        return timeline(id);
    }
    if (path.size() == 4 && path[3] == "video.mp4") {
        return wholeVideo(head, id);
    }
    if (path.size() == 5 && path[3] == "chunks") {
        return video(head, id, path[4]);
    }
    return errorAnswer(404, "there is nothing at this address");
}

Answer ViewingApi::failed(const std::string& why) const {
    services_.environment.report(why);
    return errorAnswer(500, "the receiver could not read its data");
}

Answer ViewingApi::sessions(const RequestHead& head, const RequestTarget& target) const {
    const auto query = readSessionQuery(target);
    if (!query) {
        return errorAnswer(400, query.error());
    }
    // Read before the list: what changes meanwhile makes the tag out of date, never the list.
    const auto etag = quoted(services_.store.revision());
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto page = services_.store.list(*query);
    return page ? tagged(pageJson(*page), etag) : failed(page.error());
}

Answer ViewingApi::facets(const RequestHead& head) const {
    const auto etag = quoted(services_.store.revision());
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto facets = services_.store.facets();
    return facets ? tagged(facetsJson(*facets), etag) : failed(facets.error());
}

Answer ViewingApi::replay(const RequestHead& head, const std::string& id) const {
    const auto summary = services_.store.summary(id);
    if (!summary) {
        return failed(summary.error());
    }
    if (!*summary) {
        return errorAnswer(404, "there is no such session");
    }
    const auto etag = tagOf(**summary);
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const Turn turn(building_);
    const auto outline = services_.store.outline(id);
    if (!outline || !*outline) {
        return outline ? errorAnswer(404, "there is no such session") : failed(outline.error());
    }
    const auto facts = readFacts(services_.store, **outline);
    if (!facts) {
        return failed(facts.error());
    }
    const auto json = replayJson(**outline, *facts);
    auto answer = tagged({}, etag);
    answer.piece =
        wholeText(std::make_shared<JoinedTimelines>(services_.store, **outline, json.before, json.after));
    return answer;
}

Answer ViewingApi::timeline(const std::string& id) const {
    const auto outline = services_.store.outline(id);
    if (!outline || !*outline) {
        return outline ? errorAnswer(404, "there is no such session") : failed(outline.error());
    }
    return {.headers = {{"Content-Disposition", downloadAs(id, "json")}},
            .piece = wholeText(std::make_shared<JoinedTimelines>(services_.store, **outline))};
}

Answer ViewingApi::video(const RequestHead& head, const std::string& id, const std::string& name) const {
    const auto number = chunkNumberIn(name);
    if (!number) {
        return errorAnswer(404, "there is no such chunk");
    }
    auto video = services_.store.openVideo(id, *number);
    if (!video) {
        return failed(video.error());
    }
    if (!*video) {
        return errorAnswer(404, "there is no such chunk");
    }
    const auto etag = "\"" + (*video)->digest + "\"";
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    auto answer = pieceOf(head, std::move((*video)->bytes));
    // A chunk never changes under its address, so a browser may keep it; only this viewer's, for it is
    // private.
    answer.headers.emplace_back("ETag", etag);
    answer.headers.emplace_back("Cache-Control", "private, max-age=86400, immutable");
    return answer;
}

Answer ViewingApi::wholeVideo(const RequestHead& head, const std::string& id) const {
    const auto summary = services_.store.summary(id);
    if (!summary) {
        return failed(summary.error());
    }
    if (!*summary || (*summary)->chunks == 0) {
        return errorAnswer(404, "there is no video of such a session");
    }
    const auto etag = tagOf(**summary);
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto stats = services_.store.stats();
    const auto needed = static_cast<std::uint64_t>((*summary)->bytes) + services_.config.limits.freeBytes;
    if (!stats || stats->freeBytes < needed) {
        return stats ? errorAnswer(507, "there is no room left on the disk") : failed(stats.error());
    }
    auto video = services_.exporter.make(id);
    if (!video && video.error().busy) {
        auto answer = errorAnswer(503, video.error().why);
        answer.headers = {{"Retry-After", "5"}};
        return answer;
    }
    if (!video) {
        services_.environment.report(video.error().why);
        return errorAnswer(500, "the video could not be made");
    }
    auto answer = pieceOf(head, std::move(*video));
    answer.headers.emplace_back("ETag", etag);
    answer.headers.emplace_back("Cache-Control", "private, no-cache");
    answer.headers.emplace_back("Content-Disposition", downloadAs(id, "mp4"));
    return answer;
}

Answer ViewingApi::remove(const std::string& id) const {
    const auto removed = services_.store.removeSessions({id});
    if (!removed) {
        return failed(removed.error());
    }
    return *removed > 0 ? Answer{.status = 204} : errorAnswer(404, "there is no such session");
}

}  // namespace mireth::receiver
