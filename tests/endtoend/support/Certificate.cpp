#include "endtoend/support/Certificate.hpp"

#include <stdexcept>

#include "endtoend/support/Process.hpp"

namespace mireth::endtoend {

Certificate makeCertificate(const std::string& folder, const std::vector<std::string>& hosts) {
    std::string names = "subjectAltName=";
    for (const auto& host : hosts) {
        names += (host == hosts.front() ? "DNS:" : ",DNS:") + host;
    }
    Certificate made{.file = folder + "/certificate.pem", .key = folder + "/key.pem"};
    const Ended ended = runProcess({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                                    "ec_paramgen_curve:P-256", "-nodes", "-days", "2", "-subj", "/CN=test",
                                    "-addext", names, "-keyout", made.key, "-out", made.file});
    if (ended.status != 0) {
        throw std::runtime_error("openssl: " + ended.errors);
    }
    return made;
}

}  // namespace mireth::endtoend
