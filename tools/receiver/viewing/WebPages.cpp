// Looks a file up by its path; "/" and a session's address are the page itself.
#include "viewing/WebPages.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "exchange/ErrorAnswer.hpp"
#include "viewing/WebFile.hpp"

namespace mireth::receiver {
namespace {

std::string pathOf(const RequestTarget& target) {
    const auto& segments = target.segments;
    if (segments.front().empty() || (segments.size() == 2 && segments.front() == "sessions")) {
        return "index.html";
    }
    std::string path;
    for (const auto& segment : segments) {
        path += (path.empty() ? "" : "/") + segment;
    }
    return path;
}

const WebFile* find(const RequestTarget& target) {
    const auto files = webFiles();
    const auto found = std::ranges::find(files, pathOf(target), &WebFile::path);
    return found == files.end() ? nullptr : &*found;
}

std::string contentTypeOf(std::string_view path) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 8> types{{
        {".html", "text/html; charset=utf-8"},
        {".js", "text/javascript; charset=utf-8"},
        {".css", "text/css; charset=utf-8"},
        {".svg", "image/svg+xml"},
        {".png", "image/png"},
        {".ico", "image/x-icon"},
        {".json", "application/json"},
        {".woff2", "font/woff2"},
    }};
    for (const auto& [ending, type] : types) {
        if (path.ends_with(ending)) {
            return std::string(type);
        }
    }
    return "application/octet-stream";
}

}  // namespace

bool isWebPage(const RequestTarget& target) {
    return find(target) != nullptr;
}

Answer webPage(const RequestHead& head, const RequestTarget& target) {
    if (head.method != "GET" && head.method != "HEAD") {
        return wrongMethodAnswer("GET");
    }
    const auto& file = *find(target);
    const std::string etag = "\"" + std::string(file.digest) + "\"";
    Answer answer{.contentType = contentTypeOf(file.path),
                  .headers = {{"ETag", etag}, {"Cache-Control", "no-cache"}}};
    if (head.ifNoneMatch.find(etag) != std::string::npos) {
        answer.status = 304;
    } else {
        answer.body = file.bytes;
    }
    return answer;
}

}  // namespace mireth::receiver
