// The address on the command line, read and written. Used by the serve command.
#pragma once

#include <expected>
#include <string>

namespace mireth::receiver {

struct ListenAddress {
    std::string host;  ///< without brackets
    int port = 0;

    /// Reads "127.0.0.1:8080", "localhost:0", "[::1]:8080".
    static std::expected<ListenAddress, std::string> parse(const std::string& text);
    /// The same form back.
    std::string text() const;
    /// Empty when the host is an address or leads to one; else the resolver's words. May wait for the
    /// network.
    std::string complaintAboutHost() const;
    /// True for "localhost" and for addresses that only this machine can reach.
    bool isLoopback() const;
};

}  // namespace mireth::receiver
