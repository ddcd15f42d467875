// One thread that goes on after every failure: a socket that was closed for want of a descriptor or of memory
// would leave a receiver that runs and answers nobody.
#include "http/Acceptor.hpp"

#include <cerrno>
#include <chrono>
#include <exception>
#include <string>
#include <system_error>
#include <utility>

namespace mireth::receiver {
namespace {

// Gives others time to give back what the system lacks.
constexpr std::chrono::milliseconds pause{50};

}  // namespace

int Acceptor::acceptOne(int listening, sockaddr_storage& peer) {
    socklen_t size = sizeof peer;
    return ::accept4(listening, reinterpret_cast<sockaddr*>(&peer), &size, SOCK_CLOEXEC | SOCK_NONBLOCK);
}

Acceptor::Acceptor(int listening, Take take, Report report, AcceptCall accept)
    : listening_(listening),
      take_(std::move(take)),
      report_(std::move(report)),
      accept_(std::move(accept)),
      thread_([this] { run(); }) {}

Acceptor::~Acceptor() {
    stop();
}

void Acceptor::stop() {
    if (thread_.joinable()) {
        ending_ = true;
        // Wakes the thread, if it waits for a connection.
        ::shutdown(listening_, SHUT_RDWR);
        thread_.join();
    }
}

void Acceptor::run() {
    while (!ending_) {
        try {
            acceptOrWait();
        } catch (const std::exception&) {
            // No memory, for the connection or to tell about it.
            std::this_thread::sleep_for(pause);
        }
    }
}

void Acceptor::acceptOrWait() {
    sockaddr_storage peer{};
    UniqueFd connection(accept_(listening_, peer));
    const int error = errno;
    if (connection) {
        failing_ = false;
        take_(std::move(connection), peer);
    } else if (error != ECONNABORTED && error != EINTR && !ending_) {
        // Not a client that went away before its turn: the system lacks something.
        if (!std::exchange(failing_, true)) {
            report_("no connection can be accepted for now: " + std::generic_category().message(error));
        }
        std::this_thread::sleep_for(pause);
    }
}

}  // namespace mireth::receiver
