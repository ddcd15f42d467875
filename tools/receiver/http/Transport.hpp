// Bytes in and out of one accepted connection, plain or through TLS, within the connection's time.
#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include "http/ConnectionTimer.hpp"

namespace mireth::receiver {

/// One thread at a time.
class Transport {
  public:
    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    /// At least one byte, 0 at the end, -1 when it failed or the time was over.
    virtual std::ptrdiff_t read(char* into, std::size_t size) = 0;
    /// True when all of it went out.
    virtual bool write(std::string_view bytes) = 0;
    /// Says that nothing more will be written; reading stays possible.
    virtual void endWriting() = 0;
    virtual int descriptor() const = 0;
};

/// The server's certificate and key.
class TlsContext {
  public:
    /// Reads PEM files; the error names the file.
    static std::expected<std::shared_ptr<TlsContext>, std::string> load(const std::string& certificateFile,
                                                                        const std::string& keyFile);
    virtual ~TlsContext() = default;

    /// Shakes hands on the connected, non-blocking socket `fd`; null when that fails. The context must
    /// outlive the result.
    virtual std::unique_ptr<Transport> accept(int fd, ConnectionTimer& timer) = 0;
};

/// `fd` must be non-blocking; it and `timer` must outlive the result.
std::unique_ptr<Transport> plainTransport(int fd, ConnectionTimer& timer);

}  // namespace mireth::receiver
