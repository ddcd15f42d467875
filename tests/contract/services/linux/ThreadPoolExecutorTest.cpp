#include "platforms/linux/system/ThreadPoolExecutor.hpp"

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

#include "TestSupport.hpp"

namespace mireth::platform {

using test::Counter;

TEST(ThreadPoolExecutor, RunsAsManyAtOnceAsItHasThreads) {
    ThreadPoolExecutor pool(3);
    Counter together;
    Counter done;
    for (int i = 0; i < 3; ++i) {
        pool.post([&] {
            together.increment();
            if (together.waitFor(3)) {
                done.increment();
            }
        });
    }
    EXPECT_TRUE(done.waitFor(3));
}

TEST(ThreadPoolExecutor, OneThreadKeepsTheOrder) {
    ThreadPoolExecutor pool(1);
    std::vector<int> order;
    Counter done;
    for (int i = 0; i < 50; ++i) {
        pool.post([&, i] {
            order.push_back(i);
            done.increment();
        });
    }
    ASSERT_TRUE(done.waitFor(50));
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(ThreadPoolExecutor, WorkMayDropThePoolThatRunsIt) {
    auto pool = std::make_unique<ThreadPoolExecutor>(2);
    Counter started;
    Counter finished;
    pool->post([&] {
        started.waitFor(1);
        pool.reset();
        finished.increment();
    });
    started.increment();
    EXPECT_TRUE(finished.waitFor(1));
}

TEST(ThreadPoolExecutor, SignalsOfTheHostStayOnTheHostsThreads) {
    ThreadPoolExecutor pool(1);
    sigset_t blocked{};
    Counter done;
    pool.post([&] {
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        done.increment();
    });
    ASSERT_TRUE(done.waitFor(1));
    for (const int signal : {SIGINT, SIGTERM, SIGCHLD, SIGPIPE, SIGALRM, SIGUSR1}) {
        EXPECT_EQ(sigismember(&blocked, signal), 1) << signal;
    }
    for (const int fault : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE}) {
        EXPECT_EQ(sigismember(&blocked, fault), 0) << "a crash reporter wants to see " << fault;
    }
    sigset_t here{};
    pthread_sigmask(SIG_SETMASK, nullptr, &here);
    EXPECT_EQ(sigismember(&here, SIGTERM), 0) << "the starting thread gets its mask back";
}

}  // namespace mireth::platform
