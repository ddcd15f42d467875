// Videos go out as they are read; what was asked for in vain is not read at all.
#include "viewing/VideoAnswers.hpp"

#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "exchange/ByteRange.hpp"
#include "exchange/ErrorAnswer.hpp"
#include "viewing/EntityTag.hpp"

namespace mireth::receiver {
namespace {

constexpr const char* videoType = "video/mp4";

// "12.mp4"
std::optional<std::int64_t> chunkNumberIn(const std::string& name) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool whole = error == std::errc() && number >= 0 && std::string_view(end) == ".mp4";
    return whole ? std::optional(number) : std::nullopt;
}

// The file, or the range of it that the request asks for, unless that is of another state of the file.
Answer pieceOf(const RequestHead& head, const std::string& etag, std::shared_ptr<ByteSource> file) {
    const auto size = file->size();
    const bool sameFile = head.ifRange.empty() || head.ifRange == etag;
    const auto range = byteRange(sameFile ? head.range : "", size);
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

Answer VideoAnswers::chunk(const RequestHead& head, const std::string& id, const std::string& name) const {
    const auto number = chunkNumberIn(name);
    if (!number) {
        return errorAnswer(404, "there is no such chunk");
    }
    const auto found = services_.store.findVideo(id, *number);
    if (!found) {
        return unreadableAnswer(services_.environment, found.error());
    }
    if (!*found) {
        return errorAnswer(404, "there is no such chunk");
    }
    const auto etag = "\"" + (*found)->digest + "\"";
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    auto video = services_.store.openVideo((*found)->key);
    if (!video) {
        return unreadableAnswer(services_.environment, video.error());
    }
    auto answer = pieceOf(head, etag, std::move(*video));
    // Asked for again each time, though a chunk never changes: it must not be there after a logging out or
    // its removal.
    answer.headers.emplace_back("ETag", etag);
    answer.headers.emplace_back("Cache-Control", "private, no-cache");
    return answer;
}

Answer VideoAnswers::whole(const RequestHead& head, const std::string& id) const {
    const auto summary = services_.store.summary(id);
    if (!summary) {
        return unreadableAnswer(services_.environment, summary.error());
    }
    if (!*summary || (*summary)->chunks == 0) {
        return errorAnswer(404, "there is no video of such a session");
    }
    const auto etag = entityTagOf(**summary);
    if (isKnown(head, etag)) {
        return notModified(etag);
    }
    const auto stats = services_.store.stats();
    const auto needed = static_cast<std::uint64_t>((*summary)->bytes) + services_.config.limits.freeBytes;
    if (!stats || stats->freeBytes < needed) {
        return stats ? errorAnswer(507, "there is no room left on the disk")
                     : unreadableAnswer(services_.environment, stats.error());
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
    auto answer = pieceOf(head, etag, std::move(*video));
    answer.headers.emplace_back("ETag", etag);
    answer.headers.emplace_back("Cache-Control", "private, no-cache");
    answer.headers.emplace_back("Content-Disposition", downloadAs(id, "mp4"));
    return answer;
}

}  // namespace mireth::receiver
