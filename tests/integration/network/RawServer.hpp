// A server on a loopback port whose manners the test decides, byte by byte.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace mireth::test {

/// One accepted connection. Reading and writing give up when the peer is gone or the server is destroyed.
class Connection {
  public:
    Connection(int socket, const std::atomic<bool>& closing) : socket_(socket), closing_(closing) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    /// Reads until `end` has come, or the peer is gone. All that was read since the last call.
    std::string readUntil(std::string_view end);
    /// A request's head, and its body when it has a Content-Length.
    std::string readRequest();
    /// False when the peer is gone.
    bool write(std::string_view bytes);
    /// Waits until the peer closes; false when the server was destroyed before.
    bool waitForClose();
    void pause(std::chrono::milliseconds time) const { std::this_thread::sleep_for(time); }
    bool isClosing() const { return closing_; }

  private:
    bool waitFor(short events) const;
    bool readSome();
    const int socket_;
    const std::atomic<bool>& closing_;
    std::string unread_;
};

class RawServer {
  public:
    using Handler = std::function<void(Connection&)>;

    /// Runs `handler` on a thread of its own for each connection.
    explicit RawServer(Handler handler);
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    /// Ends all connections.
    ~RawServer();

    int port() const { return port_; }
    std::string origin(std::string_view scheme = "http", std::string_view host = "127.0.0.1") const;
    int connections() const { return connections_; }

  private:
    void acceptAll();

    const Handler handler_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<int> connections_ = 0;
    std::atomic<bool> closing_ = false;
    std::vector<std::thread> handlers_;  // the accepting thread's, then the destructor's
    std::thread acceptor_;
};

}  // namespace mireth::test
