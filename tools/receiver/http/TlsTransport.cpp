// A transport through OpenSSL, TLS 1.2 or later.
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509err.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

#include "http/Transport.hpp"

namespace mireth::receiver {
namespace {

struct Free {
    void operator()(SSL* ssl) const { SSL_free(ssl); }
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};

class TlsTransport final : public Transport {
  public:
    TlsTransport(std::unique_ptr<SSL, Free> ssl, int fd, ConnectionTimer& timer)
        : ssl_(std::move(ssl)), fd_(fd), timer_(timer) {}

    bool shakeHands() {
        return repeat([this] { return SSL_accept(ssl_.get()); }) > 0;
    }

    std::ptrdiff_t read(char* into, std::size_t size) override {
        const int most = static_cast<int>(std::min<std::size_t>(size, INT_MAX));
        return repeat([&] { return SSL_read(ssl_.get(), into, most); });
    }

    bool write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const int most = static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX));
            const int sent = repeat([&] { return SSL_write(ssl_.get(), bytes.data(), most); });
            if (sent <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    void endWriting() override {
        if (!broken_) {
            SSL_shutdown(ssl_.get());
        }
        ::shutdown(fd_, SHUT_WR);
    }
    int descriptor() const override { return fd_; }

  private:
    // Runs an OpenSSL operation until it is through: its result, 0 at the peer's end, -1 on failure.
    template <typename Operation>
    int repeat(Operation operation) {
        for (;;) {
            ERR_clear_error();
            const int result = operation();
            if (result > 0) {
                return result;
            }
            const int why = SSL_get_error(ssl_.get(), result);
            if (why == SSL_ERROR_ZERO_RETURN) {
                return 0;
            }
            const bool again = why == SSL_ERROR_WANT_READ || why == SSL_ERROR_WANT_WRITE;
            const short events = why == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
            if (!again || !timer_.wait(fd_, events)) {
                broken_ = broken_ || !again;
                ERR_clear_error();
                return -1;
            }
        }
    }

    const std::unique_ptr<SSL, Free> ssl_;
    const int fd_;
    ConnectionTimer& timer_;
    bool broken_ = false;
};

class OpenSslContext final : public TlsContext {
  public:
    explicit OpenSslContext(std::unique_ptr<SSL_CTX, Free> context) : context_(std::move(context)) {}

    std::unique_ptr<Transport> accept(int fd, ConnectionTimer& timer) override {
        std::unique_ptr<SSL, Free> ssl(SSL_new(context_.get()));
        if (!ssl || SSL_set_fd(ssl.get(), fd) != 1) {
            return nullptr;
        }
        auto transport = std::make_unique<TlsTransport>(std::move(ssl), fd, timer);
        return transport->shakeHands() ? std::move(transport) : nullptr;
    }

  private:
    const std::unique_ptr<SSL_CTX, Free> context_;
};

std::unexpected<std::string> failure(const std::string& what) {
    const auto code = ERR_get_error();
    const char* const reason = code == 0 ? nullptr : ERR_reason_error_string(code);
    ERR_clear_error();
    return std::unexpected(what + (reason == nullptr ? "" : ": " + std::string(reason)));
}

bool isOfAnotherCertificate(unsigned long code) {
    return ERR_GET_LIB(code) == ERR_LIB_X509 && ERR_GET_REASON(code) == X509_R_KEY_VALUES_MISMATCH;
}

}  // namespace

std::expected<std::shared_ptr<TlsContext>, std::string> TlsContext::load(const std::string& certificateFile,
                                                                         const std::string& keyFile) {
    std::unique_ptr<SSL_CTX, Free> context(SSL_CTX_new(TLS_server_method()));
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1) {
        return failure("TLS cannot be set up");
    }
    for (const auto& file : {certificateFile, keyFile}) {
        // OpenSSL's words for a missing file are not the operator's.
        if (::access(file.c_str(), R_OK) != 0) {
            return std::unexpected(file + ": cannot be read: " + std::generic_category().message(errno));
        }
    }
    if (SSL_CTX_use_certificate_chain_file(context.get(), certificateFile.c_str()) != 1) {
        return failure(certificateFile + " is not a usable certificate");
    }
    if (SSL_CTX_use_PrivateKey_file(context.get(), keyFile.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(context.get()) != 1) {
        return failure(keyFile + (isOfAnotherCertificate(ERR_peek_error()) ? " is not the certificate's key"
                                                                           : " is not a usable key"));
    }
    // OpenSSL's sockets know no MSG_NOSIGNAL; the HTTP server ignores SIGPIPE for the process.
    return std::make_shared<OpenSslContext>(std::move(context));
}

}  // namespace mireth::receiver
