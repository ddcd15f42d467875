// What the HTTP client refuses to send. Used by CurlTransfer before anything reaches the network.
#pragma once

#include <curl/curl.h>

#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::platform {

struct CurlUrlDeleter {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using CurlUrl = std::unique_ptr<CURLU, CurlUrlDeleter>;

/// An address that may be used, as parsed by the very code that will connect to it.
struct CheckedUrl {
    CurlUrl handle;
    /// Scheme, host, port and path, for error texts; without the query, which may hold what nobody should
    /// read in a log.
    std::string display;
    std::string host;
    std::string port;
};

/// True for 127.0.0.0/8, ::1 (also in brackets), "localhost" and every name below it (RFC 6761, 6.3).
bool isLoopbackHost(std::string_view host);

/// True for "localhost" and the names below it, in any case.
bool isLocalhostName(std::string_view host);

/// Parses `url` and holds it to the rules: https, or http when `allowInsecureHttp` or to a loopback host; no
/// user or password. Otherwise the reason in words.
std::expected<CheckedUrl, std::string> checkUrl(const std::string& url, bool allowInsecureHttp);

/// Empty, or why the method or a header field must not be sent: names are tokens (RFC 9110, 5.6.2), values
/// hold no control characters but the tab, and the fields that frame a message are the client's own.
std::string checkMessage(const HttpRequest& request);

/// `text` fit for one line of a log: control characters replaced, cut at 200 bytes.
std::string printable(std::string_view text);

}  // namespace mireth::platform
