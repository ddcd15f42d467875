// mireth-receiver behind nginx, both run as docs/operating.md says: command line, configuration and nginx's
// site are taken from the page, and only addresses and paths are put in their places.
#pragma once

#include <httplib.h>

#include <memory>
#include <string>

#include "support/Program.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver::test {

class ProxiedReceiver {
  public:
    static bool hasNginx();

    /// Both accept connections then.
    ProxiedReceiver();

    /// A client that knows the certificate and calls the proxy by this name.
    std::unique_ptr<httplib::SSLClient> client(const std::string& name) const;
    /// As the page itself is called: name and port.
    std::string origin(const std::string& name) const;
    /// What nginx has written so far, everywhere.
    std::string logs() const;
    /// Ends the receiver at once; nginx stays.
    void killReceiver() const { receiver_->signal(SIGKILL); }

    const std::string uploadToken = "upload-token-of-a-test-5d41402abc4b2a76";
    const std::string viewingToken = "viewing-token-of-a-test-7d793037a0760186";

  private:
    void makeCertificate() const;
    void startReceiver();
    void startNginx();
    std::string site() const;

    const TemporaryDirectory directory_;
    const std::string page_;
    int receiverPort_ = 0;
    int port_ = 0;
    std::unique_ptr<Program> receiver_;
    std::unique_ptr<Program> nginx_;
};

}  // namespace mireth::receiver::test
