#include "platforms/linux/network/NetlinkPathMonitor.hpp"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <ostream>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "NetworkNamespace.hpp"

namespace mireth::platform {

/// How a failure shows a path.
void PrintTo(const NetworkPath& path, std::ostream* out) {
    *out << (path.satisfied ? "satisfied" : "none") << (path.usesWifi ? " wifi" : "")
         << (path.usesCellular ? " cellular" : "") << (path.usesWired ? " wired" : "");
}

using test::addLink;
using test::inOwnNetwork;
using test::ip;

namespace {

constexpr NetworkPath none{};
constexpr NetworkPath wired{.satisfied = true, .usesWired = true};
constexpr NetworkPath wifi{.satisfied = true, .usesWifi = true};
constexpr NetworkPath cellular{.satisfied = true, .usesCellular = true};
constexpr NetworkPath wifiAndWired{.satisfied = true, .usesWifi = true, .usesWired = true};

/// Stands for the driver's word: links called wl… are Wi-Fi.
LinkKind classifyByName(const LinkDescription& link) {
    return link.name.starts_with("wl") ? LinkKind::wifi : LinkKind::wired;
}

/// Takes netlink sockets from this process, as a sandbox does.
bool forbidNetlink() {
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_socket, 0, 3),
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{.len = filter.size(), .filter = filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// A started monitor and what it has reported.
class Watch {
  public:
    explicit Watch(LinkClassifier classify = classifyByName) : monitor_(std::move(classify)) {
        monitor_.start([this](const NetworkPath& path) {
            std::unique_lock lock(mutex_);
            paths_.push_back(path);
            changed_.notify_all();
            changed_.wait(lock, [this] { return !held_; });
        });
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { monitor_.cancel(); }

    /// Waits until `path` is the last one reported.
    bool comesTo(const NetworkPath& path) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10),
                                 [&] { return !paths_.empty() && paths_.back() == path; });
    }
    /// True when nothing but `path` is reported for a while.
    bool staysAt(const NetworkPath& path) {
        std::unique_lock lock(mutex_);
        const std::size_t before = paths_.size();
        changed_.wait_for(lock, std::chrono::milliseconds(300), [&] { return paths_.size() > before; });
        return paths_.size() == before && !paths_.empty() && paths_.back() == path;
    }
    /// While held, the handler does not return.
    void hold(bool held) {
        const std::lock_guard lock(mutex_);
        held_ = held;
        changed_.notify_all();
    }
    std::vector<NetworkPath> paths() {
        const std::lock_guard lock(mutex_);
        return paths_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<NetworkPath> paths_;  // guarded by mutex_
    bool held_ = false;               // guarded by mutex_
    NetlinkPathMonitor monitor_;
};

}  // namespace

TEST(NetlinkPathMonitor, ADefaultRouteOverALinkThatIsUpSatisfies) {
    inOwnNetwork([] {
        Watch watch;
        EXPECT_TRUE(watch.comesTo(none)) << "a network without links";
        addLink("eth0");
        ip("addr add 192.0.2.2/24 dev eth0");
        EXPECT_TRUE(watch.staysAt(none)) << "a link without a default route";
        ip("route add 198.51.100.0/24 via 192.0.2.1");
        EXPECT_TRUE(watch.staysAt(none)) << "a route to one network only";
        ip("route add default via 192.0.2.1");
        EXPECT_TRUE(watch.comesTo(wired));
        ip("route del default");
        EXPECT_TRUE(watch.comesTo(none));
        ip("route add default via 192.0.2.1");
        EXPECT_TRUE(watch.comesTo(wired));
        ip("link set eth0 down");
        EXPECT_TRUE(watch.comesTo(none));
        EXPECT_EQ(watch.paths(), (std::vector{none, wired, none, wired, none})) << "changes only";
    });
}

TEST(NetlinkPathMonitor, ThePathThatIsThereIsReportedFirst) {
    inOwnNetwork([] {
        addLink("wl0");
        ip("route add default dev wl0");
        Watch watch;
        EXPECT_TRUE(watch.comesTo(wifi));
        EXPECT_EQ(watch.paths().size(), 1u);
    });
}

TEST(NetlinkPathMonitor, ThePathUsesTheKindsOfAllDefaultRoutes) {
    inOwnNetwork([] {
        addLink("eth0");
        addLink("wl0");
        ip("route add default dev wl0 metric 600");
        Watch watch;
        EXPECT_TRUE(watch.comesTo(wifi));
        ip("route add default dev eth0 metric 100");
        EXPECT_TRUE(watch.comesTo(wifiAndWired));
        ip("route del default dev wl0");
        EXPECT_TRUE(watch.comesTo(wired));
        ip("route replace default metric 100 nexthop dev eth0 nexthop dev wl0");
        EXPECT_TRUE(watch.comesTo(wifiAndWired)) << "one route over two links";
    });
}

TEST(NetlinkPathMonitor, AnIpv6DefaultRouteSatisfiesToo) {
    inOwnNetwork([] {
        addLink("wl0");
        Watch watch;
        ip("-6 route add default via fe80::1 dev wl0");
        EXPECT_TRUE(watch.comesTo(wifi));
        ip("-6 route del default");
        EXPECT_TRUE(watch.comesTo(none));
    });
}

TEST(NetlinkPathMonitor, ARouteInATableOfItsOwnCounts) {
    inOwnNetwork([] {
        addLink("eth0");
        ip("route add default dev eth0 table 100");
        Watch watch;
        EXPECT_TRUE(watch.comesTo(wired));
    });
}

TEST(NetlinkPathMonitor, RoutesThatLeadNowhereDoNotSatisfy) {
    inOwnNetwork([] {
        Watch watch;
        EXPECT_TRUE(watch.comesTo(none));
        for (const char* type : {"unreachable", "blackhole", "prohibit"}) {
            ip(std::string("route add ") + type + " default metric 1");
            ip(std::string("-6 route add ") + type + " default metric 1");
            EXPECT_TRUE(watch.staysAt(none)) << type;
            ip(std::string("route del ") + type + " default metric 1");
            ip(std::string("-6 route del ") + type + " default metric 1");
        }
        ip("route add default dev lo");
        EXPECT_TRUE(watch.staysAt(none)) << "loopback";
    });
}

TEST(NetlinkPathMonitor, ALinkWithoutACarrierDoesNotSatisfy) {
    inOwnNetwork([] {
        addLink("eth0");
        ip("route add default dev eth0");
        Watch watch;
        EXPECT_TRUE(watch.comesTo(wired));
        ASSERT_TRUE(test::takeCarrier("eth0"));
        EXPECT_TRUE(watch.comesTo(none));
    });
}

TEST(NetlinkPathMonitor, TheUsualClassifierKnowsMobileLinksByName) {
    inOwnNetwork([] {
        addLink("wwan0");
        ip("route add default dev wwan0");
        Watch watch(sysfsLinkClassifier());
        EXPECT_TRUE(watch.comesTo(cellular));
    });
}

TEST(NetlinkPathMonitor, LostNoticesDoNotLoseTheChange) {
    inOwnNetwork([] {
        addLink("eth0");
        Watch watch;
        watch.hold(true);
        ASSERT_TRUE(watch.comesTo(none));
        // Far more notices than the socket holds, while nobody reads them; the change comes last.
        const int made = std::system(
            "{ for i in $(seq 1 12000); do echo route add 10.$((i / 250)).$((i % 250)).1/32 dev eth0; done; "
            "echo route add default dev eth0; } | ip -batch -");
        ASSERT_EQ(made, 0);
        watch.hold(false);
        EXPECT_TRUE(watch.comesTo(wired));
        ip("route del default");
        EXPECT_TRUE(watch.comesTo(none)) << "the monitor goes on after the loss";
    });
}

TEST(NetlinkPathMonitor, ASystemThatCannotBeWatchedReportsOneUnsatisfiedPath) {
    inOwnNetwork([] {
        addLink("eth0");
        ip("route add default dev eth0");
        ASSERT_TRUE(forbidNetlink());
        Watch watch;
        EXPECT_TRUE(watch.comesTo(none));
        EXPECT_TRUE(watch.staysAt(none));
        EXPECT_EQ(watch.paths().size(), 1u);
    });
}

TEST(NetlinkPathMonitor, AFailureIsAPathThatIsNotSatisfiedUntilTheNetworkCanBeReadAgain) {
    inOwnNetwork([] {
        addLink("eth0");
        ip("route add default dev eth0");
        bool hasThrown = false;
        Watch watch([&hasThrown](const LinkDescription& link) {
            if (!std::exchange(hasThrown, true)) {
                throw std::runtime_error("out of memory");
            }
            return classifyByName(link);
        });
        EXPECT_TRUE(watch.comesTo(wired));
        ip("route del default");
        EXPECT_TRUE(watch.comesTo(none)) << "it goes on watching";
        EXPECT_EQ(watch.paths(), (std::vector{none, wired, none}));
    });
}

TEST(NetlinkPathMonitor, NothingIsReportedAfterCancel) {
    inOwnNetwork([] {
        addLink("eth0");
        int reports = 0;
        NetlinkPathMonitor monitor(classifyByName);
        std::mutex mutex;
        monitor.start([&](const NetworkPath&) {
            const std::lock_guard lock(mutex);
            ++reports;
        });
        monitor.cancel();
        const int before = reports;
        ip("route add default dev eth0");
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        EXPECT_EQ(reports, before);
        EXPECT_LE(before, 1);
    });
}

TEST(NetlinkPathMonitor, AProcessMayEndWhileItReads) {
    constexpr int processes = 80;
    int unclean = 0;
    for (int delay = 0; delay < processes; ++delay) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // As in an app: the monitor is still there when main returns.
            static auto* const monitor = new NetlinkPathMonitor(sysfsLinkClassifier());
            monitor->start([](const NetworkPath&) {});
            std::this_thread::sleep_for(std::chrono::microseconds(delay * 25));
            std::exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        unclean += WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
    }
    EXPECT_EQ(unclean, 0);
}

}  // namespace mireth::platform
