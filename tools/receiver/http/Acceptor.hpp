// Takes in connections until it is told to stop, whatever the system says meanwhile. Used by the HTTP server.
#pragma once

#include <sys/socket.h>

#include <atomic>
#include <functional>
#include <string_view>
#include <thread>

#include "base/UniqueFd.hpp"

namespace mireth::receiver {

class Acceptor {
  public:
    /// Called on the acceptor's own thread, one connection after the other. It should not wait.
    using Take = std::function<void(UniqueFd connection, const sockaddr_storage& peer)>;
    /// As accept() does: the connection's descriptor, or -1 and errno.
    using AcceptCall = std::function<int(int listening, sockaddr_storage& peer)>;
    /// Is told, once until one is accepted again, why none can be. Called on the acceptor's own thread.
    using Report = std::function<void(std::string_view)>;

    /// The system's, with descriptors that do not block and that no other program inherits.
    static int acceptOne(int listening, sockaddr_storage& peer);

    /// Begins at once. `listening` is a listening socket that outlives the acceptor.
    Acceptor(int listening, Take take, Report report, AcceptCall accept = acceptOne);
    Acceptor(const Acceptor&) = delete;
    Acceptor& operator=(const Acceptor&) = delete;
    /// Stops.
    ~Acceptor();

    /// Returns once the last connection was taken; from then on the address refuses connections. Once only.
    void stop();

  private:
    void run();
    void acceptOrWait();

    const int listening_;
    const Take take_;
    const Report report_;
    const AcceptCall accept_;
    std::atomic<bool> ending_ = false;
    bool failing_ = false;  // touched by the thread only
    std::thread thread_;
};

}  // namespace mireth::receiver
