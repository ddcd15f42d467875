// Routing within the viewing API, and its answers.
#include "viewing/ViewingApi.hpp"

#include <memory>
#include <utility>

#include "exchange/ErrorAnswer.hpp"
#include "exchange/SmallExchange.hpp"
#include "viewing/EntityTag.hpp"
#include "viewing/JoinedTimelines.hpp"
#include "viewing/SessionFacts.hpp"
#include "viewing/SessionJson.hpp"
#include "viewing/SessionQueryReader.hpp"

namespace mireth::receiver {
namespace {

bool isGet(const RequestHead& head) {
    return head.method == "GET" || head.method == "HEAD";
}

FilePiece wholeText(std::shared_ptr<ByteSource> text) {
    const auto size = text->size();
    return {.file = std::move(text), .size = size, .compressible = true};
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
        return videos_.whole(head, id);
    }
    if (path.size() == 5 && path[3] == "chunks") {
        return videos_.chunk(head, id, path[4]);
    }
    return errorAnswer(404, "there is nothing at this address");
}

Answer ViewingApi::sessions(const RequestHead& head, const RequestTarget& target) const {
    const auto query = readSessionQuery(target);
    if (!query) {
        return errorAnswer(400, query.error());
    }
    // Read before the list: what changes meanwhile makes the tag out of date, never the list.
    const auto etag = entityTag(services_.store.revision());
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto page = services_.store.list(*query);
    return page ? tagged(pageJson(*page), etag) : unreadableAnswer(services_.environment, page.error());
}

Answer ViewingApi::facets(const RequestHead& head) const {
    const auto etag = entityTag(services_.store.revision());
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto facets = services_.store.facets();
    return facets ? tagged(facetsJson(*facets), etag)
                  : unreadableAnswer(services_.environment, facets.error());
}

Answer ViewingApi::replay(const RequestHead& head, const std::string& id) const {
    const auto summary = services_.store.summary(id);
    if (!summary) {
        return unreadableAnswer(services_.environment, summary.error());
    }
    if (!*summary) {
        return errorAnswer(404, "there is no such session");
    }
    const auto etag = entityTagOf(**summary);
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const Turn turn(building_);
    const auto outline = services_.store.outline(id);
    if (!outline || !*outline) {
        return outline ? errorAnswer(404, "there is no such session")
                       : unreadableAnswer(services_.environment, outline.error());
    }
    const auto facts = readFacts(services_.store, **outline);
    if (!facts) {
        return unreadableAnswer(services_.environment, facts.error());
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
        return outline ? errorAnswer(404, "there is no such session")
                       : unreadableAnswer(services_.environment, outline.error());
    }
    return {.headers = {{"Content-Disposition", downloadAs(id, "json")}},
            .piece = wholeText(std::make_shared<JoinedTimelines>(services_.store, **outline))};
}

Answer ViewingApi::remove(const std::string& id) const {
    const auto removed = services_.store.removeSessions({id});
    if (!removed) {
        return unreadableAnswer(services_.environment, removed.error());
    }
    return *removed > 0 ? Answer{.status = 204} : errorAnswer(404, "there is no such session");
}

}  // namespace mireth::receiver
