// A self-signed certificate for a receiver that speaks TLS.
#pragma once

#include <string>
#include <vector>

namespace mireth::endtoend {

/// Two PEM files. The certificate is its own authority.
struct Certificate {
    std::string file;
    std::string key;
};

/// Made with openssl, good for two days for exactly these host names. `folder` must exist.
Certificate makeCertificate(const std::string& folder, const std::vector<std::string>& hosts);

}  // namespace mireth::endtoend
