// Whom the HTTP client trusts.
#include <httplib.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <thread>
#include <vector>

#include "HttpResults.hpp"
#include "contract/services/TestSupport.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::platform {

using test::contains;
using test::errorOf;
using test::requestTo;
using test::sendAndWait;
using test::TemporaryDirectory;

namespace {

/// A self-signed certificate for `name`, which is its own authority.
class Certificate {
  public:
    explicit Certificate(const std::string& name) {
        const std::string command =
            "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj "
            "/CN=test "
            "-addext subjectAltName=DNS:" +
            name + " -keyout " + key().native() + " -out " + file().native() + " 2>/dev/null";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("openssl could not make a certificate");
        }
    }
    std::filesystem::path file() const { return directory_ / "certificate.pem"; }
    std::filesystem::path key() const { return directory_ / "key.pem"; }

  private:
    TemporaryDirectory directory_;
};

constexpr std::chrono::seconds idleLimit(1);

/// An https server on a loopback port that answers "hello" and resets connections that idle.
class TlsServer {
  public:
    using Configure = std::function<void(SSL_CTX&)>;

    explicit TlsServer(const Certificate& certificate, const Configure& configure = {})
        : server_([&](SSL_CTX& context) {
              SSL_CTX_use_certificate_chain_file(&context, certificate.file().c_str());
              SSL_CTX_use_PrivateKey_file(&context, certificate.key().c_str(), SSL_FILETYPE_PEM);
              if (configure) {
                  configure(context);
              }
              return true;
          }) {
        const auto hello = [this](const httplib::Request&, httplib::Response& response) {
            ++requests_;
            response.set_content("hello", "text/plain");
        };
        server_.Get("/", hello).Post("/", hello);
        server_.set_payload_max_length(1024);
        server_.set_keep_alive_timeout(idleLimit.count());
        server_.set_socket_options([](int socket) {
            // Closing resets the connection.
            const linger hard{.l_onoff = 1, .l_linger = 0};
            setsockopt(socket, SOL_SOCKET, SO_LINGER, &hard, sizeof(hard));
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        startWithoutPipeSignals();
        while (!server_.is_running()) {
            std::this_thread::yield();
        }
    }
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;
    ~TlsServer() {
        server_.stop();
        thread_.join();
    }

    std::string url(const std::string& host) const {
        return "https://" + host + ":" + std::to_string(port_) + "/";
    }
    int requests() const { return requests_; }

  private:
    /// The server library ignores SIGPIPE for the whole process. The client has to do without that, so the
    /// signal gets its deadly meaning back, and is blocked on the server's own threads.
    void startWithoutPipeSignals() {
        signal(SIGPIPE, SIG_DFL);
        sigset_t pipe{};
        sigset_t before{};
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, &before);
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    httplib::SSLServer server_;
    std::atomic<int> requests_ = 0;
    int port_ = 0;
    std::thread thread_;
};

CurlHttpClientOptions trusting(const std::filesystem::path& file) {
    CurlHttpClientOptions options;
    options.extraCaFile = file;
    return options;
}

}  // namespace

TEST(CurlHttpClientTls, AnExtraAuthorityIsTrusted) {
    const Certificate certificate("us-west.localhost");
    const TlsServer server(certificate);
    CurlHttpClient client(trusting(certificate.file()));
    const auto result = sendAndWait(client, requestTo(server.url("us-west.localhost")));
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->body, "hello");
}

TEST(CurlHttpClientTls, ACertificateOfAnUnknownAuthorityIsRefused) {
    const Certificate certificate("us-west.localhost");
    const TlsServer server(certificate);
    CurlHttpClient client;
    const std::string error = errorOf(sendAndWait(client, requestTo(server.url("us-west.localhost"))));
    EXPECT_TRUE(contains(error, "certificate")) << error;
    EXPECT_EQ(server.requests(), 0);
}

TEST(CurlHttpClientTls, ACertificateForAnotherNameIsRefused) {
    const Certificate certificate("us-west.localhost");
    const TlsServer server(certificate);
    CurlHttpClient client(trusting(certificate.file()));
    for (const char* host : {"eu-west.localhost", "localhost", "127.0.0.1"}) {
        const std::string error = errorOf(sendAndWait(client, requestTo(server.url(host))));
        EXPECT_TRUE(contains(error, "subject name")) << error;
    }
    EXPECT_EQ(server.requests(), 0);
}

TEST(CurlHttpClientTls, InsecureHttpDoesNotMakeHttpsInsecure) {
    const Certificate certificate("localhost");
    const TlsServer server(certificate);
    CurlHttpClientOptions options;
    options.allowInsecureHttp = true;
    CurlHttpClient client(options);
    EXPECT_FALSE(sendAndWait(client, requestTo(server.url("localhost"))));
    EXPECT_EQ(server.requests(), 0);
}

TEST(CurlHttpClientTls, AServerThatKnowsOnlyTls11IsRefused) {
    const Certificate certificate("localhost");
    const auto limitTo = [](int oldest, int newest) {
        return [=](SSL_CTX& context) {
            SSL_CTX_set_security_level(&context, 0);
            SSL_CTX_set_min_proto_version(&context, oldest);
            SSL_CTX_set_max_proto_version(&context, newest);
        };
    };
    const TlsServer old(certificate, limitTo(TLS1_VERSION, TLS1_1_VERSION));
    const TlsServer fine(certificate, limitTo(TLS1_VERSION, TLS1_2_VERSION));
    CurlHttpClient client(trusting(certificate.file()));
    EXPECT_FALSE(sendAndWait(client, requestTo(old.url("localhost"))));
    EXPECT_EQ(old.requests(), 0);
    const auto result = sendAndWait(client, requestTo(fine.url("localhost")));
    EXPECT_TRUE(result) << result.error().description;
}

TEST(CurlHttpClientTls, AnAuthoritiesFileThatCannotBeUsedStopsEveryRequest) {
    const Certificate certificate("localhost");
    const TlsServer server(certificate);
    CurlHttpClient missing(trusting("/missing/ca.pem"));
    EXPECT_EQ(errorOf(sendAndWait(missing, requestTo(server.url("localhost")))),
              "GET: cannot read the authorities in '/missing/ca.pem': No such file or directory");
    CurlHttpClient wrong(trusting(certificate.key()));
    EXPECT_TRUE(contains(errorOf(sendAndWait(wrong, requestTo(server.url("localhost")))),
                         "there is no certificate in it"));
    const TemporaryDirectory directory;
    const auto file = directory / "damaged.pem";
    std::ofstream(file) << "-----BEGIN CERTIFICATE-----\nMIIBogus\n-----END CERTIFICATE-----\n";
    CurlHttpClient damaged(trusting(file));
    EXPECT_TRUE(contains(errorOf(sendAndWait(damaged, requestTo(server.url("localhost")))),
                         "a certificate in it is damaged"));
}

TEST(CurlHttpClientTls, AConnectionThatWasResetMeanwhileIsReplaced) {
    const Certificate certificate("localhost");
    TlsServer server(certificate);
    CurlHttpClient client(trusting(certificate.file()));
    ASSERT_TRUE(sendAndWait(client, requestTo(server.url("localhost"))));
    std::this_thread::sleep_for(idleLimit + std::chrono::milliseconds(500));
    const auto result = sendAndWait(client, requestTo(server.url("localhost")));
    EXPECT_TRUE(result) << result.error().description;
}

TEST(CurlHttpClientTls, WritingToAClosedConnectionIsNoSignal) {
    CurlHttpClient client;
    std::promise<bool> blocked;
    // OpenSSL writes without MSG_NOSIGNAL, so the thread it runs on must not take the signal.
    const auto token = client.send(requestTo("refused:"), [&](const HttpResult&) {
        sigset_t mask{};
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        blocked.set_value(sigismember(&mask, SIGPIPE) == 1);
    });
    EXPECT_TRUE(blocked.get_future().get());
}

TEST(CurlHttpClientTls, AServerThatHangsUpDuringAnUploadGivesAResult) {
    const Certificate certificate("localhost");
    const TlsServer server(certificate);
    CurlHttpClient client(trusting(certificate.file()));
    HttpRequest request = requestTo(server.url("localhost"));
    request.method = "POST";
    request.body = std::string(std::size_t{8} * 1024 * 1024, 'b');
    const auto result = sendAndWait(client, request);
    EXPECT_TRUE(!result || result->status == 413);
}

namespace {

/// A TlsServer in a process of its own: the one that forks clients has no threads.
class TlsServerProcess {
  public:
    explicit TlsServerProcess(const Certificate& certificate) {
        std::array<int, 2> urls{};
        std::array<int, 2> ends{};
        if (pipe(urls.data()) != 0 || pipe(ends.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        child_ = fork();
        if (child_ == 0) {
            close(ends[1]);
            const TlsServer server(certificate);
            const std::string url = server.url("localhost");
            const ssize_t told = write(urls[1], url.data(), url.size());
            close(urls[1]);
            // Until the test's process closes its end, or is gone.
            char nothing = 0;
            while (told > 0 && read(ends[0], &nothing, 1) < 0 && errno == EINTR) {
            }
            _exit(0);
        }
        close(urls[1]);
        close(ends[0]);
        end_ = ends[1];
        std::array<char, 100> text{};
        const ssize_t length = read(urls[0], text.data(), text.size());
        close(urls[0]);
        url_.assign(text.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    }
    TlsServerProcess(const TlsServerProcess&) = delete;
    TlsServerProcess& operator=(const TlsServerProcess&) = delete;
    ~TlsServerProcess() {
        close(end_);
        waitpid(child_, nullptr, 0);
    }
    const std::string& url() const { return url_; }

  private:
    pid_t child_ = -1;
    int end_ = -1;
    std::string url_;
};

/// The status of a process that runs `body` and then ends as an app does, with exit().
template <class Body>
int statusOfProcess(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace

TEST(CurlHttpClientTls, AProcessMayEndWhileItTransfers) {
    const Certificate certificate("localhost");
    const TlsServerProcess server(certificate);
    for (int delay = 0; delay < 60; ++delay) {
        const int status = statusOfProcess([&] {
            // As in an app: the client is still there when main returns.
            static auto* const client = new CurlHttpClient(trusting(certificate.file()));
            static auto* const requests = new std::vector<AnyCancellable>;
            for (int i = 0; i < 2; ++i) {
                requests->push_back(client->send(requestTo(server.url()), [](HttpResult) {}));
            }
            std::this_thread::sleep_for(std::chrono::microseconds((delay % 20) * 500));
        });
        EXPECT_EQ(status, 0) << "in process " << delay;
    }
}

TEST(CurlHttpClientTls, AClientMayBeDestroyedWhileTheProcessEnds) {
    const Certificate certificate("localhost");
    const TlsServerProcess server(certificate);
    for (int delay = 0; delay < 30; ++delay) {
        const int status = statusOfProcess([&] {
            // Set up before the client, and so destroyed after the libraries that it stands on.
            static std::unique_ptr<CurlHttpClient> client;
            static AnyCancellable request;
            client = std::make_unique<CurlHttpClient>(trusting(certificate.file()));
            request = client->send(requestTo(server.url()), [](HttpResult) {});
            std::this_thread::sleep_for(std::chrono::microseconds(delay * 300));
        });
        EXPECT_EQ(status, 0) << "in process " << delay;
    }
}

}  // namespace mireth::platform
