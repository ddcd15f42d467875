#include "NetworkNamespace.hpp"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace mireth::test {

namespace {

constexpr int refused = 77;

bool quietly(const std::string& command) {
    return std::system((command + " 2>/dev/null").c_str()) == 0;
}

/// Becomes root of a user namespace of its own, for those who are not root already.
bool becomeRoot() {
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    if (unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    return getuid() == 0;
}

bool enterOwnNetwork() {
    if (unshare(CLONE_NEWNET) != 0 && !(becomeRoot() && unshare(CLONE_NEWNET) == 0)) {
        return false;
    }
    return quietly("ip link set lo up");
}

}  // namespace

void inOwnNetwork(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (!enterOwnNetwork()) {
            _exit(refused);
        }
        body();
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    if (WEXITSTATUS(status) == refused) {
        GTEST_SKIP() << "NOT TESTED: this system refuses network namespaces, so no network can be made up";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0) << "see the failures above";
}

void ip(const std::string& arguments) {
    EXPECT_EQ(std::system(("ip " + arguments).c_str()), 0) << "ip " << arguments;
}

void addLink(const std::string& name) {
    // Kernels without dummy links have virtual cables; the other end needs to be up too.
    if (!quietly("ip link add " + name + " type dummy")) {
        ip("link add " + name + " type veth peer name p" + name);
        ip("link set p" + name + " up");
    }
    ip("link set " + name + " up");
}

bool takeCarrier(const std::string& name) {
    return quietly("ip link set p" + name + " down") || quietly("ip link set " + name + " carrier off");
}

}  // namespace mireth::test
