// Where the server listens, and with what certificate.
#pragma once

#include <optional>
#include <string>

namespace mireth::receiver {

struct TlsFiles {
    std::string certificate;  ///< PEM, with its chain
    std::string key;          ///< PEM
};

struct ListenOptions {
    std::string host = "127.0.0.1";  ///< a name or address; IPv6 without brackets
    int port = 8080;                 ///< 0: a free one
    std::optional<TlsFiles> tls;
};

}  // namespace mireth::receiver
