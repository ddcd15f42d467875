// Identifiers are echoed only when they can do no harm in a log.
#include "http/AnswerHeaders.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace mireth::receiver {
namespace {

constexpr auto transactionId = "x-transaction-id";
constexpr auto requestId = "x-request-id";
// What every answer says to a browser: run nothing but what came from here, sniff and frame nothing, keep
// nothing unless the answer says otherwise.
constexpr std::array<std::pair<const char*, const char*>, 7> precautions{{
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; media-src 'self' blob:;"
     " connect-src 'self'; base-uri 'none'; form-action 'self'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
}};

bool isPlainIdentifier(const std::string& text) {
    const auto plain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
               c == '_' || c == '.';
    };
    return !text.empty() && text.size() <= 128 && std::all_of(text.begin(), text.end(), plain);
}

}  // namespace

void addHeaders(const httplib::Request& request, httplib::Response& response,
                const Environment& environment) {
    const auto requested = request.get_header_value(transactionId);
    response.set_header(transactionId,
                        isPlainIdentifier(requested) ? requested : environment.newIdentifier());
    response.set_header(requestId, environment.newIdentifier());
    for (const auto& [name, value] : precautions) {
        if (!response.has_header(name)) {
            response.set_header(name, value);
        }
    }
}

std::string bareResponse(const std::string& status, const Environment& environment) {
    constexpr std::string_view body = R"({"status":"ERROR"})";
    std::string text = "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: " +
                       std::to_string(body.size()) + "\r\nConnection: close\r\n";
    const auto add = [&](const std::string& name, const std::string& value) {
        text += name + ": " + value + "\r\n";
    };
    add(transactionId, environment.newIdentifier());
    add(requestId, environment.newIdentifier());
    for (const auto& [name, value] : precautions) {
        add(name, value);
    }
    return text + "\r\n" + std::string(body);
}

}  // namespace mireth::receiver
