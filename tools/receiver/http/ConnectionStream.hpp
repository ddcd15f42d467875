// What httplib reads a request from and writes its answer to. It takes in the whole head first, within its
// bounds, so that nothing oversized reaches httplib's parsing. Included by .cpp files only.
#pragma once

#include <httplib.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "http/ConnectionTimer.hpp"
#include "http/Transport.hpp"

namespace mireth::receiver {

/// One connection's one request; one thread.
class ConnectionStream final : public httplib::Stream {
  public:
    enum class Head { complete, oversized, absent };

    /// `mostBytes` bounds what is read after the head, however the body is framed. Both references outlive
    /// the stream.
    ConnectionStream(Transport& transport, ConnectionTimer& timer, std::uint64_t mostBytes)
        : transport_(transport), timer_(timer), allowance_(mostBytes) {}

    /// Reads until the head is complete; `absent` when the client stays silent, is slow or goes away.
    Head readHead();
    /// Ends the answer and waits a moment for the client to take it: closing with unread input would reset
    /// the connection and the answer could be lost.
    void linger();

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* into, std::size_t size) override;
    ssize_t write(const char* bytes, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return transport_.descriptor(); }

  private:
    Transport& transport_;
    ConnectionTimer& timer_;
    std::uint64_t allowance_;
    std::string ahead_;  ///< read from the transport and not yet handed on
    std::size_t at_ = 0;
};

}  // namespace mireth::receiver
