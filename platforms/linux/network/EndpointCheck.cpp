// As the library's request factory reads it first, then as the HTTP client does.
#include "platforms/linux/network/EndpointCheck.hpp"

#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>

#include "platforms/linux/network/HttpRules.hpp"

namespace mireth::platform {

std::string complaintAboutEndpoint(const std::string& url, bool allowInsecureHttp) {
    // Whoever misplaces an "@" may have meant a password.
    if (url.find('@') != std::string::npos) {
        return "must hold no user or password";
    }
    const std::string shown = "\"" + printable(url) + "\"";
    const auto parsed = boost::urls::parse_uri(url);
    if (!parsed || parsed->encoded_host().empty()) {
        return shown + " is no URL such as https://sr.example.org";
    }
    if (parsed->has_query() || parsed->has_fragment()) {
        return shown + " must hold no \"?\" and no \"#\"";
    }
    if (url.ends_with('/')) {
        return shown + " must not end in a slash";
    }
    const auto checked = checkUrl(url, allowInsecureHttp);
    return checked ? std::string() : checked.error();
}

}  // namespace mireth::platform
