#include "platforms/linux/network/NetlinkPathMonitor.hpp"

#include <linux/rtnetlink.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "platforms/linux/network/NetlinkHandles.hpp"
#include "platforms/linux/network/RouteTables.hpp"
#include "platforms/linux/system/FileDescriptor.hpp"
#include "platforms/linux/system/HelperThread.hpp"

namespace mireth::platform {

namespace {

using Milliseconds = std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr Milliseconds quietTime(50);
constexpr Milliseconds longestDelay(1000);
constexpr Milliseconds retryTime(1000);
constexpr Milliseconds forEver(-1);

/// A socket that the kernel tells of every change of interfaces and routes; null when there is none.
NetlinkSocket subscribe() {
    NetlinkSocket socket = connectRouteSocket();
    if (!socket || nl_socket_set_nonblocking(socket.get()) != 0 ||
        nl_socket_add_memberships(socket.get(), RTNLGRP_LINK, RTNLGRP_IPV4_ROUTE, RTNLGRP_IPV6_ROUTE, 0) !=
            0) {
        return nullptr;
    }
    return socket;
}

/// Empties the socket. What the notices say does not matter, since the tables are read anew; nor does it
/// matter when some were lost (ENOBUFS). False when the socket is of no more use.
bool drain(int socket) {
    std::array<char, 8192> notice{};
    for (;;) {
        if (recv(socket, notice.data(), notice.size(), MSG_DONTWAIT) >= 0) {
            continue;
        }
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            return true;
        }
        if (errno != EINTR && errno != ENOBUFS) {
            return false;
        }
    }
}

}  // namespace

/// Shared with its thread, which may be the last to need it.
class NetlinkPathMonitor::Watcher {
  public:
    Watcher(LinkClassifier classify, EscapedErrorHandler onEscapedError)
        : classify_(std::move(classify)),
          onEscapedError_(std::move(onEscapedError)),
          stopEvent_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    ~Watcher() {
        if (thread_.joinable()) {
            thread_.detach();
        }
    }

    void start(const std::shared_ptr<Watcher>& self, UpdateHandler handler) {
        const std::lock_guard lock(threadMutex_);
        if (thread_.joinable() || stopping_) {
            return;
        }
        handler_ = std::move(handler);
        try {
            thread_ = startHelperThread("mireth-path", [self] { self->watch(); });
        } catch (const std::system_error&) {
            reportCurrentException("the start of the path monitor", onEscapedError_);
        }
    }

    void cancel() {
        stopping_ = true;
        if (stopEvent_) {
            eventfd_write(stopEvent_.get(), 1);
        }
        if (threadId_ == std::this_thread::get_id()) {
            return;
        }
        const std::lock_guard lock(threadMutex_);
        if (thread_.joinable()) {
            thread_.join();
        }
    }

  private:
    enum class Event { none, change, failure, stop };

    void watch() {
        threadId_ = std::this_thread::get_id();
        while (!stopping_) {
            runGuarded("the path monitor", [this] { follow(); }, onEscapedError_);
            // A process may be out of descriptors or memory for a while; nothing is known until it is not.
            report(NetworkPath{});
            if (!stopEvent_) {
                return;
            }
            pollfd stop{.fd = stopEvent_.get(), .events = POLLIN, .revents = 0};
            poll(&stop, 1, static_cast<int>(retryTime.count()));
        }
    }

    /// Reports every change until the end, or until the kernel or the classifier fails.
    void follow() {
        // Subscribed before the first reading: a change in between is then noticed.
        const NetlinkSocket socket = stopEvent_ ? subscribe() : nullptr;
        if (!socket) {
            return;
        }
        const int descriptor = nl_socket_get_fd(socket.get());
        Event event = Event::change;
        while (event == Event::change) {
            const auto path = readNetworkPath(classify_);
            report(path.value_or(reported_.value_or(NetworkPath{})));
            event = waitForChange(descriptor, path ? forEver : retryTime);
        }
    }

    /// Gives `change` after a burst of changes has passed, and after `timeout` without one.
    Event waitForChange(int descriptor, Milliseconds timeout) {
        Event event = wait(descriptor, timeout);
        while (event == Event::none && timeout == forEver) {
            event = wait(descriptor, timeout);
        }
        const auto end = SteadyClock::now() + longestDelay;
        while (event == Event::change && SteadyClock::now() < end) {
            event = wait(descriptor, quietTime);
        }
        return event == Event::none ? Event::change : event;
    }

    /// Waits for a change, which is then taken off the socket, or until `timeout`.
    Event wait(int descriptor, Milliseconds timeout) {
        std::array<pollfd, 2> sources{pollfd{.fd = stopEvent_.get(), .events = POLLIN, .revents = 0},
                                      pollfd{.fd = descriptor, .events = POLLIN, .revents = 0}};
        const int ready = poll(sources.data(), sources.size(), static_cast<int>(timeout.count()));
        if (stopping_) {
            return Event::stop;
        }
        if (ready < 0 && errno != EINTR) {
            return Event::failure;
        }
        if (sources[1].revents == 0) {
            return Event::none;
        }
        return drain(descriptor) ? Event::change : Event::failure;
    }

    void report(const NetworkPath& path) {
        if (stopping_ || reported_ == path) {
            return;
        }
        reported_ = path;
        runGuarded("a handler of the network path", [&] { handler_(path); }, onEscapedError_);
    }

    // Constant after construction.
    const LinkClassifier classify_;
    const EscapedErrorHandler onEscapedError_;
    const FileDescriptor stopEvent_;

    std::atomic<bool> stopping_ = false;
    std::atomic<std::thread::id> threadId_;

    std::mutex threadMutex_;
    std::thread thread_;  // guarded by threadMutex_

    // The thread's own once it runs.
    UpdateHandler handler_;
    std::optional<NetworkPath> reported_;
};

NetlinkPathMonitor::NetlinkPathMonitor(LinkClassifier classify, EscapedErrorHandler onEscapedError)
    : watcher_(std::make_shared<Watcher>(std::move(classify), std::move(onEscapedError))) {}

NetlinkPathMonitor::~NetlinkPathMonitor() {
    watcher_->cancel();
}

void NetlinkPathMonitor::start(UpdateHandler handler) {
    watcher_->start(watcher_, std::move(handler));
}

void NetlinkPathMonitor::cancel() {
    watcher_->cancel();
}

}  // namespace mireth::platform
