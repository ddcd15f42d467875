// The bind policy: whether the receiver may listen where it was told to. What strangers can reach needs
// tokens and TLS. Used by the serve command before anything is opened.
#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>

#include "command/ServeOptions.hpp"
#include "settings/AccessRules.hpp"
#include "settings/ListenAddress.hpp"

namespace mireth::receiver {

/// The rules that the options ask for, the tokens read from their files; or why the receiver must not start.
std::expected<AccessRules, std::string> accessRulesFor(const ServeOptions& options,
                                                       const ListenAddress& address);

/// How many connections one network address may have at once when the operator did not say: none, as many as
/// there are, where all come from one, as on this machine or through a proxy.
std::optional<std::size_t> connectionsPerAddress(const ServeOptions& options, const ListenAddress& address);

}  // namespace mireth::receiver
