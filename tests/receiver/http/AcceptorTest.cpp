// Accepting goes on whatever the system says. Over real sockets, with failures put in their way.
#include "http/Acceptor.hpp"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <future>
#include <mutex>
#include <string>
#include <vector>

#include "support/RawClient.hpp"

namespace mireth::receiver {
namespace {

using test::RawConnection;
using Reports = std::vector<std::string>;

class AcceptorTest : public testing::Test {
  protected:
    void SetUp() override {
        listening_ = UniqueFd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        ASSERT_EQ(::bind(listening_.get(), general, size), 0);
        ASSERT_EQ(::listen(listening_.get(), 8), 0);
        ASSERT_EQ(::getsockname(listening_.get(), general, &size), 0);
        port_ = ntohs(address.sin_port);
    }
    // Answers every connection with its count, so that a client can see that it was taken.
    std::unique_ptr<Acceptor> accepting(Acceptor::AcceptCall accept = Acceptor::acceptOne) {
        return std::make_unique<Acceptor>(
            listening_.get(),
            [](const UniqueFd& connection, const sockaddr_storage& peer) {
                const std::string answer =
                    peer.ss_family == AF_INET ? "HTTP/1.1 200 OK\r\n\r\n" : "HTTP/1.1 500 No\r\n\r\n";
                ::send(connection.get(), answer.data(), answer.size(), MSG_NOSIGNAL);
            },
            [this](std::string_view line) {
                const std::lock_guard lock(mutex_);
                reports_.emplace_back(line);
            },
            std::move(accept));
    }
    Reports reports() {
        const std::lock_guard lock(mutex_);
        return reports_;
    }

    UniqueFd listening_;
    int port_ = 0;
    std::mutex mutex_;
    Reports reports_;  // guarded by mutex_
};

TEST_F(AcceptorTest, TakesOneConnectionAfterTheOther) {
    const auto acceptor = accepting();
    EXPECT_EQ(RawConnection(port_).receive().status, 200);
    EXPECT_EQ(RawConnection(port_).receive().status, 200);
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(AcceptorTest, GoesOnAfterEveryFailureAndTellsOfARunOfThemOnce) {
    // Each group of failures is followed by a connection.
    const std::vector<int> failures{ENFILE, ENOBUFS,      ENOMEM, EMFILE, EPROTO,
                                    0,      ECONNABORTED, EINTR,  0,      ENFILE};
    std::size_t at = 0;
    const auto acceptor = accepting([&](int listening, sockaddr_storage& peer) {
        const int error = at < failures.size() ? failures[at++] : 0;
        errno = error;
        return error == 0 ? Acceptor::acceptOne(listening, peer) : -1;
    });
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(RawConnection(port_).receive().status, 200);
    }
    const std::string why = "no connection can be accepted for now: Too many open files in system";
    EXPECT_EQ(reports(), (Reports{why, why}));
}

TEST_F(AcceptorTest, StopsWhileItWaitsAndWhileItFails) {
    {
        auto waiting = accepting();
        waiting->stop();
        EXPECT_THROW(RawConnection{port_}, std::runtime_error);
    }
    SetUp();
    std::promise<void> failed;
    bool told = false;
    auto failing = accepting([&](int, sockaddr_storage&) {
        if (!std::exchange(told, true)) {
            failed.set_value();
        }
        errno = ENFILE;
        return -1;
    });
    failed.get_future().wait();
    failing->stop();
    EXPECT_THROW(RawConnection{port_}, std::runtime_error);
}

}  // namespace
}  // namespace mireth::receiver
