// The seam between the HTTP server and the endpoints: what the server hands up, what comes back. Neither side
// sees the other's library.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ByteSource.hpp"

namespace mireth::receiver {

/// The part of a request that is known before its body.
struct RequestHead {
    std::string method;
    std::string target;  ///< path and query as they stand in the request line, still percent-encoded
    std::string contentType;
    std::string host;  ///< the value of this header and of those that follow; "" when absent
    std::string ifNoneMatch;
    std::string range;
    std::string ifRange;
    std::string cookie;
    std::string authorization;
    std::string origin;
    std::string fetchSite;  ///< "Sec-Fetch-Site"
    std::string asked;      ///< "X-Mireth-Request"
};

/// A piece of a file that is sent as it is read.
struct FilePiece {
    std::shared_ptr<ByteSource> file;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    bool compressible = false;  ///< then it goes without its length to a client that takes it compressed
};

struct Answer {
    int status = 200;
    std::string body = {};
    std::string contentType = "application/json";
    std::vector<std::pair<std::string, std::string>> headers = {};
    std::optional<FilePiece> piece = std::nullopt;  ///< instead of the body
};

/// One request on its way: takes the body piece by piece, then answers. Used on one thread.
class Exchange {
  public:
    Exchange() = default;
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    virtual ~Exchange() = default;

    /// Longest body that is read for this request, in bytes.
    virtual std::uint64_t bodyLimit() const = 0;
    virtual void accept(std::string_view bytes) = 0;
    /// The answer, once the whole body has been accepted.
    virtual Answer finish() = 0;
    /// The answer when the body is not read to its end: 413 too long, 400 broken off or malformed.
    virtual Answer refuse(int status) = 0;
};

/// Makes the exchange for a request. Any thread may call.
class RequestHandler {
  public:
    RequestHandler() = default;
    RequestHandler(const RequestHandler&) = delete;
    RequestHandler& operator=(const RequestHandler&) = delete;
    virtual ~RequestHandler() = default;

    /// Never null. The exchange may refer to the handler.
    virtual std::unique_ptr<Exchange> begin(const RequestHead& head) = 0;
    /// A request was answered 431, as its head was too long to be read.
    virtual void headTooLong() = 0;
    /// A connection was turned away because all were taken.
    virtual void turnedAway() = 0;
    /// A connection was dropped because its client was slow and others waited.
    virtual void slowClientShed() = 0;
};

}  // namespace mireth::receiver
