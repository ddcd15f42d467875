// Tokens first, then what lacks.
#include "command/BindPolicy.hpp"

#include <algorithm>
#include <optional>

#include "access/Secrets.hpp"

namespace mireth::receiver {
namespace {

std::expected<std::optional<std::string>, std::string> tokenOf(const std::optional<std::string>& file) {
    if (!file) {
        return std::nullopt;
    }
    auto token = readToken(*file);
    if (!token) {
        return std::unexpected(token.error());
    }
    return std::optional(std::move(*token));
}

// How strangers come to the receiver; none when only this machine does.
std::optional<std::string> whyReachable(const ServeOptions& options, const ListenAddress& address) {
    if (options.behindProxy) {
        return "a proxy lets strangers reach the receiver";
    }
    if (!address.isLoopback()) {
        return "strangers can reach " + address.text();
    }
    // On loopback another name is of no use but through a proxy, or a tunnel, that nobody told of.
    const auto other = std::ranges::find_if(
        options.hosts, [](const std::string& name) { return !ListenAddress{.host = name}.isLoopback(); });
    return other == options.hosts.end() ? std::nullopt
                                        : std::optional("viewers call the receiver \"" + *other + "\"");
}

}  // namespace

std::optional<std::size_t> connectionsPerAddress(const ServeOptions& options, const ListenAddress& address) {
    constexpr std::size_t ofOneStranger = 64;
    return options.behindProxy || address.isLoopback() ? std::nullopt : std::optional(ofOneStranger);
}

std::expected<AccessRules, std::string> accessRulesFor(const ServeOptions& options,
                                                       const ListenAddress& address) {
    auto upload = tokenOf(options.uploadTokenFile);
    auto viewing = tokenOf(options.viewingTokenFile);
    if (!upload || !viewing) {
        return std::unexpected(!upload ? upload.error() : viewing.error());
    }
    if (const auto reachable = whyReachable(options, address)) {
        if (!*upload || !*viewing) {
            return std::unexpected(*reachable +
                                   ": give --upload-token-file and --viewing-token-file, or listen on "
                                   "127.0.0.1 without a proxy");
        }
        if (!options.tls && !options.behindProxy) {
            return std::unexpected(
                *reachable + ": give --tls-cert and --tls-key, or --behind-proxy when a proxy does TLS");
        }
        if (**upload == **viewing) {
            return std::unexpected("the two tokens are the same: who may upload could view everything");
        }
    }
    return AccessRules{.uploadToken = std::move(*upload),
                       .viewingToken = std::move(*viewing),
                       .hosts = options.hosts,
                       .secure = options.tls.has_value() || options.behindProxy};
}

}  // namespace mireth::receiver
