// What the command line says about serving. Read by the command line, carried out by the serve command.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "http/ListenOptions.hpp"

namespace mireth::receiver {

struct ServeOptions {
    std::string listen = "127.0.0.1:8080";
    std::optional<TlsFiles> tls;
    bool behindProxy = false;  ///< a proxy before the receiver does TLS
    std::optional<std::string> uploadTokenFile;
    std::optional<std::string> viewingTokenFile;
    std::vector<std::string> hosts;  ///< names under which viewers call the receiver
    std::string data;
    std::optional<std::string> config;
    bool printReady = false;
};

}  // namespace mireth::receiver
