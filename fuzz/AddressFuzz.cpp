// No data centre that a service names leads log lines to a host that is not below the configured one, as the
// code that connects reads the address. The input is the data centre and the base address, a line each.
#include <algorithm>
#include <string>

#include "PrivateSide/Api/LogHost.hpp"
#include "Property.hpp"
#include "platforms/linux/network/HttpRules.hpp"

namespace {

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return text;
}

/// An address in figures.
bool isNumber(std::string_view host) {
    return host.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    const std::string_view text = fuzz::textOf(data, size);
    const auto end = text.find('\n');
    const std::string_view dataCenter = text.substr(0, end);
    const std::string base(end == std::string_view::npos ? "https://kelda.example" : text.substr(end + 1));
    const auto url = logUrl(dataCenter, base);
    const auto reachedBase = platform::checkUrl(base, true);
    // The host configures the base; nothing is fetched from one that cannot be used, and no name lies below a
    // number, which is read as an address.
    if (!url || !reachedBase || isNumber(reachedBase->host)) {
        return 0;
    }
    const auto reached = platform::checkUrl(*url, false);
    fuzz::require(reached.has_value(), "a log address can be connected to");
    const std::string host = lowerCase(reached->host);
    const std::string below = "." + lowerCase(reachedBase->host);
    fuzz::require(host.ends_with(below), "a log host lies below the base's host");
    fuzz::require(host.find('.') == host.size() - below.size(), "a data centre is one label");
    fuzz::require(reached->port == reachedBase->port || reached->port == "443", "a log host keeps the port");
    return 0;
}
