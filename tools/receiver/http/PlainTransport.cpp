// A transport straight over the socket.
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>

#include "http/Transport.hpp"

namespace mireth::receiver {
namespace {

class PlainTransport final : public Transport {
  public:
    PlainTransport(int fd, ConnectionTimer& timer) : fd_(fd), timer_(timer) {}

    std::ptrdiff_t read(char* into, std::size_t size) override {
        for (;;) {
            const ssize_t got = ::recv(fd_, into, size, 0);
            if (got >= 0 || !mayRetry(POLLIN)) {
                return got;
            }
        }
    }

    bool write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent < 0 && !mayRetry(POLLOUT)) {
                return false;
            }
            bytes.remove_prefix(sent < 0 ? 0 : static_cast<std::size_t>(sent));
        }
        return true;
    }

    void endWriting() override { ::shutdown(fd_, SHUT_WR); }
    int descriptor() const override { return fd_; }

  private:
    bool mayRetry(short events) {
        if (errno == EINTR) {
            return true;
        }
        return (errno == EAGAIN || errno == EWOULDBLOCK) && timer_.wait(fd_, events);
    }

    const int fd_;
    ConnectionTimer& timer_;
};

}  // namespace

std::unique_ptr<Transport> plainTransport(int fd, ConnectionTimer& timer) {
    return std::make_unique<PlainTransport>(fd, timer);
}

}  // namespace mireth::receiver
