#include "PrivateSide/Api/LogHost.hpp"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>

#include "PrivateSide/Api/UrlParser.hpp"

namespace mireth {

namespace {

constexpr std::string_view logPath = "/WRTarrowEngine/Ajax.php";
constexpr std::size_t longestLabel = 63;

std::string hostLabel(std::string_view dataCenter) {
    std::string label(dataCenter);
    for (char& c : label) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        } else if (c == '_') {
            c = '-';
        }
    }
    return label;
}

bool isHostLabel(std::string_view label) {
    const auto allowed = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-'; };
    return !label.empty() && label.size() <= longestLabel && label.front() != '-' && label.back() != '-' &&
           std::ranges::all_of(label, allowed);
}

}  // namespace

std::optional<std::string> logUrl(std::string_view dataCenter, std::string_view keldaBaseUrl) {
    const std::string label = hostLabel(dataCenter);
    if (!isHostLabel(label)) {
        return std::nullopt;
    }
    const auto kelda = boost::urls::parse_uri(keldaBaseUrl);
    if (!kelda || kelda->encoded_host().empty() || !UrlParser::mayFollowHost(kelda->encoded_path())) {
        return std::nullopt;
    }
    const std::string suffix(kelda->encoded_host_and_port());
    std::string url = "https://" + label + "." + suffix + std::string(logPath);
    const auto parsed = boost::urls::parse_uri(url);
    if (!parsed || parsed->has_userinfo() ||
        std::string(parsed->encoded_host_and_port()) != label + "." + suffix) {
        return std::nullopt;
    }
    return url;
}

}  // namespace mireth
