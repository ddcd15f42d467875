// Tokens first, then what lacks.
#include "command/Exposure.hpp"

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

}  // namespace

std::expected<AccessRules, std::string> accessRulesFor(const ServeOptions& options,
                                                       const ListenAddress& address) {
    auto upload = tokenOf(options.uploadTokenFile);
    auto viewing = tokenOf(options.viewingTokenFile);
    if (!upload || !viewing) {
        return std::unexpected(!upload ? upload.error() : viewing.error());
    }
    if (!address.isLoopback() || options.behindProxy) {
        const std::string reachable = options.behindProxy ? "a proxy lets strangers reach the receiver"
                                                          : "strangers can reach " + address.text();
        if (!*upload || !*viewing) {
            return std::unexpected(reachable +
                                   ": give --upload-token-file and --viewing-token-file, or listen on "
                                   "127.0.0.1 without a proxy");
        }
        if (!options.tls && !options.behindProxy) {
            return std::unexpected(
                reachable + ": give --tls-cert and --tls-key, or --behind-proxy when a proxy does TLS");
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
