// A tag holds numbers and words of ours only.
#include "viewing/EntityTag.hpp"

#include <utility>

namespace mireth::receiver {
namespace {

// Part of every ETag: a receiver that answers in another form must not be taken for one that answers the
// same.
constexpr const char* form = "1";

}  // namespace

std::string entityTag(const std::string& state) {
    return "\"" + std::string(form) + "-" + state + "\"";
}

// A session only ever grows, so these three tell whether it did.
std::string entityTagOf(const SessionSummary& summary) {
    return entityTag(std::to_string(summary.chunks) + "-" + std::to_string(summary.logLines) +
                     (summary.session.closedMillis ? "-closed" : "-open"));
}

// The header may name several tags; ours hold no comma.
bool isKnown(const RequestHead& head, const std::string& etag) {
    return head.ifNoneMatch.find(etag) != std::string::npos || head.ifNoneMatch == "*";
}

Answer notModified(const std::string& etag) {
    return {.status = 304, .headers = {{"ETag", etag}, {"Cache-Control", "private, no-cache"}}};
}

Answer tagged(std::string body, const std::string& etag) {
    return {.body = std::move(body), .headers = {{"ETag", etag}, {"Cache-Control", "private, no-cache"}}};
}

}  // namespace mireth::receiver
