// The HTTP client of a Linux device, on libcurl.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::platform {

struct CurlHttpClientOptions {
    /// Speak http with any host, not with loopback hosts only.
    bool allowInsecureHttp = false;
    /// A PEM file of authorities to trust beside the system's. While it cannot be read every request fails.
    std::optional<std::filesystem::path> extraCaFile;
    /// Told on the client's thread what a completion has thrown; standard error when left out.
    EscapedErrorHandler onEscapedError;
};

/// All requests run on one thread of the client's, which also calls the completions: one that takes long
/// holds up the others. Connections are kept and used again; HTTP/2 is spoken where the server offers it.
///
/// Beside the rules of every client: TLS 1.2 or newer; "localhost" and the names below it are loopback
/// without asking a name server; no cookies, and nothing taken from proxy variables or .netrc files; a
/// message's framing (Host, Content-Length, Transfer-Encoding, Connection) is the client's own; the headers
/// of an answer are capped at 256 KiB. Connecting, TLS included, counts as one wait towards the idle
/// timeout, which is cut to 1 s … 24 h.
///
/// May be destroyed by a completion: the thread then ends after it.
class CurlHttpClient final : public HttpClient {
  public:
    /// Throws std::system_error when no thread can be had.
    explicit CurlHttpClient(CurlHttpClientOptions options = {});
    CurlHttpClient(const CurlHttpClient&) = delete;
    CurlHttpClient& operator=(const CurlHttpClient&) = delete;
    ~CurlHttpClient() override;

    AnyCancellable send(HttpRequest request, Completion completion) override;

  private:
    class Worker;
    std::shared_ptr<Worker> worker_;
};

}  // namespace mireth::platform
