// Pieces of files go out as they are read; bodies come in as they arrive, within the exchange's limit.
#include "http/HttplibAdapter.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace mireth::receiver {
namespace {

// Carries the multipart type past httplib, which would otherwise parse the body itself.
constexpr auto contentTypeAside = "X-Mireth-Content-Type";
constexpr std::size_t pieceBuffer = std::size_t{64} * 1024;

bool write(const FilePiece& piece, std::uint64_t at, std::uint64_t left, httplib::DataSink& sink) {
    std::vector<unsigned char> buffer(std::min(left, std::uint64_t{pieceBuffer}));
    return piece.file->readAt(piece.offset + at, buffer) &&
           sink.write(reinterpret_cast<const char*>(buffer.data()), buffer.size());
}

// httplib compresses what it sends in chunks.
void sendCompressed(const FilePiece& piece, const std::string& contentType, httplib::Response& response) {
    response.set_chunked_content_provider(contentType, [piece](std::size_t at, httplib::DataSink& sink) {
        if (at == piece.size) {
            sink.done();
            return true;
        }
        return write(piece, at, piece.size - at, sink);
    });
}

void sendPiece(const FilePiece& piece, const std::string& contentType, httplib::Response& response) {
    response.set_content_provider(static_cast<std::size_t>(piece.size), contentType,
                                  [piece](std::size_t at, std::size_t left, httplib::DataSink& sink) {
                                      return write(piece, at, left, sink);
                                  });
}

void send(const Answer& answer, const httplib::Request& request, httplib::Response& response) {
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) {
        response.set_header(name, value);
    }
    if (answer.piece) {
        const bool compressed = answer.piece->compressible && request.version == "HTTP/1.1" &&
                                request.has_header("Accept-Encoding");
        compressed ? sendCompressed(*answer.piece, answer.contentType, response)
                   : sendPiece(*answer.piece, answer.contentType, response);
    } else if (answer.status != 304) {
        response.set_content(answer.body, answer.contentType);
    }
}

Answer answerTo(const httplib::Request& request, Exchange& work, const httplib::ContentReader* reader) {
    if (reader == nullptr) {
        return work.finish();
    }
    const auto limit = work.bodyLimit();
    const bool tooLong = request.has_header("Content-Length") &&
                         request.get_header_value<std::uint64_t>("Content-Length") > limit;
    // What takes no body at all need not wait for the first piece of one whose length is not told.
    if (tooLong || (limit == 0 && request.has_header("Transfer-Encoding"))) {
        return work.refuse(413);
    }
    std::uint64_t seen = 0;
    const bool whole = (*reader)([&](const char* bytes, std::size_t count) {
        seen += count;
        if (seen <= limit) {
            work.accept({bytes, count});
        }
        return seen <= limit;
    });
    if (seen > limit) {
        return work.refuse(413);
    }
    return whole ? work.finish() : work.refuse(400);
}

}  // namespace

void hideFromHttplib(httplib::Request& request) {
    const auto type = request.get_header_value("Content-Type");
    request.headers.erase(contentTypeAside);
    request.headers.erase("Content-Type");
    request.set_header(contentTypeAside, type);
    // httplib prefers Brotli, at its slowest: half a second for a replay of half an hour.
    const auto encodings = request.get_header_value("Accept-Encoding");
    request.headers.erase("Accept-Encoding");
    if (encodings.find("gzip") != std::string::npos) {
        request.set_header("Accept-Encoding", "gzip");
    }
    // Ranges are the handler's to answer: it knows what has any.
    request.ranges.clear();
}

void dispatch(RequestHandler& handler, const httplib::Request& request, const httplib::ContentReader* reader,
              httplib::Response& response) {
    const auto work = handler.begin({.method = request.method,
                                     .target = request.target,
                                     .contentType = request.get_header_value(contentTypeAside),
                                     .host = request.get_header_value("Host"),
                                     .ifNoneMatch = request.get_header_value("If-None-Match"),
                                     .range = request.get_header_value("Range"),
                                     .ifRange = request.get_header_value("If-Range"),
                                     .cookie = request.get_header_value("Cookie"),
                                     .authorization = request.get_header_value("Authorization"),
                                     .origin = request.get_header_value("Origin"),
                                     .fetchSite = request.get_header_value("Sec-Fetch-Site"),
                                     .asked = request.get_header_value("X-Mireth-Request")});
    send(answerTo(request, *work, reader), request, response);
}

}  // namespace mireth::receiver
