#include "platforms/linux/network/HttpRules.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>

namespace mireth::platform {

namespace {

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    const CaseInsensitiveLess less;
    return !less(left, right) && !less(right, left);
}

bool isTokenCharacter(char character) {
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || marks.find(character) != std::string_view::npos;
}

bool isToken(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

bool isFieldValue(std::string_view text) {
    return std::ranges::all_of(text, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte == '\t' || (byte >= 0x20 && byte != 0x7F);
    });
}

std::string part(CURLU* url, CURLUPart which, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(url, which, &text, flags) != CURLUE_OK) {
        return {};
    }
    const std::unique_ptr<char, void (*)(void*)> owner(text, &curl_free);
    return text;
}

/// What may be shown of an address that cannot be taken apart: nothing before an '@' (a password), nothing
/// from '?' on.
std::string shownPart(std::string_view url) {
    url = url.substr(0, url.find_first_of("?#"));
    const std::size_t at = url.rfind('@');
    return printable(at == std::string_view::npos ? url : url.substr(at));
}

}  // namespace

bool isLocalhostName(std::string_view host) {
    constexpr std::string_view name = "localhost";
    if (host.size() < name.size() || !equalsIgnoringCase(host.substr(host.size() - name.size()), name)) {
        return false;
    }
    return host.size() == name.size() || host[host.size() - name.size() - 1] == '.';
}

bool isLoopbackHost(std::string_view host) {
    if (isLocalhostName(host)) {
        return true;
    }
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    }
    const std::string text(host);
    in_addr v4{};
    if (inet_pton(AF_INET, text.c_str(), &v4) == 1) {
        return (ntohl(v4.s_addr) >> 24) == 127;
    }
    in6_addr v6{};
    return inet_pton(AF_INET6, text.c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6);
}

std::expected<CheckedUrl, std::string> checkUrl(const std::string& url, bool allowInsecureHttp) {
    CheckedUrl checked;
    checked.handle.reset(curl_url());
    if (!checked.handle) {
        return std::unexpected("no memory");
    }
    CURLU* const handle = checked.handle.get();
    if (url.find('\0') != std::string::npos) {
        return std::unexpected("the address holds a zero byte: " + shownPart(url));
    }
    const CURLUcode parsed = curl_url_set(handle, CURLUPART_URL, url.c_str(), CURLU_DISALLOW_USER);
    if (parsed != CURLUE_OK) {
        return std::unexpected("the address is refused: " + std::string(curl_url_strerror(parsed)) + ": " +
                               shownPart(url));
    }
    checked.host = part(handle, CURLUPART_HOST);
    checked.port = part(handle, CURLUPART_PORT, CURLU_DEFAULT_PORT);
    const std::string scheme = part(handle, CURLUPART_SCHEME);
    checked.display =
        printable(scheme + "://" + checked.host + ":" + checked.port + part(handle, CURLUPART_PATH));
    const bool mayBeHttp = allowInsecureHttp || isLoopbackHost(checked.host);
    if (scheme != "https" && !(scheme == "http" && mayBeHttp)) {
        return std::unexpected("the address is refused: only https is spoken with this host: " +
                               checked.display);
    }
    return checked;
}

std::string checkMessage(const HttpRequest& request) {
    if (!isToken(request.method) || request.method == "CONNECT") {
        return "the method is refused: " + printable(request.method);
    }
    if (request.method == "HEAD" && request.body) {
        return "a HEAD request has no body";
    }
    for (const auto& [name, value] : request.headers) {
        if (!isToken(name) || !isFieldValue(value)) {
            return "the header field is refused: " + printable(name);
        }
        for (const std::string_view framing : {"Content-Length", "Transfer-Encoding", "Connection", "Host"}) {
            if (equalsIgnoringCase(name, framing)) {
                return "the header field is the client's own: " + printable(name);
            }
        }
    }
    return {};
}

std::string printable(std::string_view text) {
    constexpr std::size_t longest = 200;
    std::string line(text.substr(0, longest));
    for (char& character : line) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            character = '?';
        }
    }
    return line;
}

}  // namespace mireth::platform
