// Sends HTTP requests.
#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/Base/Export.hpp"

namespace mireth::platform {

struct HttpRequest {
    std::string url;
    std::string method = "GET";
    /// In sending order; a name may occur more than once.
    std::vector<std::pair<std::string, std::string>> headers;
    /// Absent: no body is sent.
    std::optional<std::string> body;
    /// The request fails after this long without any byte sent or received, connecting included. On Linux cut
    /// to 1 s … 24 h. A whole request may take longer.
    std::chrono::seconds idleTimeout{60};
};

/// Compares header names as RFC 9110 wants them compared: ASCII case does not count.
struct MIRETH_EXPORT CaseInsensitiveLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept;
};

using HeaderFields = std::map<std::string, std::string, CaseInsensitiveLess>;

/// What a server answered. `status` and `headers` mean something only when `isHttp`.
struct UrlResponse {
    /// False for an answer over another scheme, which has no status.
    bool isHttp = true;
    /// The kind of response in words, for log lines.
    std::string typeName = "HTTPURLResponse";
    int status = 0;
    /// The last value of each field.
    HeaderFields headers;
    std::string body;
};

/// No answer came: the address was refused by policy, could not be reached, timed out, or was cut off.
struct TransportError {
    std::string description;
};

using HttpResult = std::expected<UrlResponse, TransportError>;

/// Any thread may send, also several at once. A client follows no redirects, speaks https only (http only to
/// a loopback host, which is 127.0.0.0/8, ::1, and by RFC 6761 "localhost" and the names below it, for which
/// no name server is asked; or when it was built to allow it), checks certificates, and caps the body of an
/// answer at 1 MiB (a longer one is a TransportError).
class HttpClient {
  public:
    using Completion = std::move_only_function<void(HttpResult)>;

    /// Ends the requests still running and drops their completions. Waits for one that runs, unless from it.
    virtual ~HttpClient() = default;

    /// Starts `request` and returns at once. `completion` is called exactly once, on a thread of the client's
    /// own, never before `send` returns. Dropping or cancelling the token, on any thread, ends the request
    /// without waiting: no completion begins after that, one that runs already goes on. The server may have
    /// got the request all the same.
    virtual AnyCancellable send(HttpRequest request, Completion completion) = 0;
};

}  // namespace mireth::platform
