#include "MirethVex/Base/PassthroughSubject.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace mireth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PassthroughSubject, SendsOnlyWhatComesAfterTheSubscription) {
    const PassthroughSubject<int> subject;
    std::vector<int> got;
    subject.send(1);
    const auto token = subject.sink([&](int value) { got.push_back(value); });
    subject.send(2);
    subject.send(3);
    EXPECT_THAT(got, ElementsAre(2, 3));
}

TEST(PassthroughSubject, CallsSubscribersInTheOrderOfSubscription) {
    const PassthroughSubject<int> subject;
    std::string order;
    const auto a = subject.sink([&](int) { order += 'a'; });
    const auto b = subject.sink([&](int) { order += 'b'; });
    const auto c = subject.sink([&](int) { order += 'c'; });
    subject.send(0);
    EXPECT_EQ(order, "abc");
}

TEST(PassthroughSubject, DroppingTheTokenEndsTheSubscription) {
    const PassthroughSubject<int> subject;
    std::vector<int> got;
    {
        const auto token = subject.sink([&](int value) { got.push_back(value); });
        subject.send(1);
    }
    subject.send(2);
    EXPECT_THAT(got, ElementsAre(1));
}

TEST(PassthroughSubject, CancellingReleasesTheReceiver) {
    const PassthroughSubject<int> subject;
    const auto owned = std::make_shared<int>(1);
    auto token = subject.sink([owned](int) {});
    EXPECT_EQ(owned.use_count(), 2);
    token.cancel();
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(PassthroughSubject, ASubscriberMayCancelItselfDuringASend) {
    const PassthroughSubject<int> subject;
    std::vector<int> got;
    AnyCancellable token;
    token = subject.sink([&](int value) {
        got.push_back(value);
        token.cancel();
    });
    subject.send(1);
    subject.send(2);
    EXPECT_THAT(got, ElementsAre(1));
}

TEST(PassthroughSubject, ASubscriberCancelledByAnEarlierOneIsNotCalledAnyMore) {
    const PassthroughSubject<int> subject;
    AnyCancellable second;
    bool secondCalled = false;
    const auto first = subject.sink([&](int) { second.cancel(); });
    second = subject.sink([&](int) { secondCalled = true; });
    subject.send(1);
    EXPECT_FALSE(secondCalled);
}

TEST(PassthroughSubject, ASubscriberAddedDuringASendDoesNotGetThatValue) {
    const PassthroughSubject<int> subject;
    std::vector<int> late;
    AnyCancellable lateToken;
    const auto token = subject.sink([&](int) {
        if (!lateToken) {
            lateToken = subject.sink([&](int value) { late.push_back(value); });
        }
    });
    subject.send(1);
    EXPECT_THAT(late, IsEmpty());
    subject.send(2);
    EXPECT_THAT(late, ElementsAre(2));
}

TEST(PassthroughSubject, AReceiverMaySendAgain) {
    const PassthroughSubject<int> subject;
    std::vector<int> got;
    const auto token = subject.sink([&](int value) {
        got.push_back(value);
        if (value < 3) {
            subject.send(value + 1);
        }
    });
    subject.send(1);
    EXPECT_THAT(got, ElementsAre(1, 2, 3));
}

TEST(PassthroughSubject, AReceiverMayDestroyTheSubject) {
    auto subject = std::make_unique<PassthroughSubject<int>>();
    int calls = 0;
    const auto token = subject->sink([&](int) {
        ++calls;
        subject.reset();
    });
    subject->send(1);
    EXPECT_EQ(calls, 1);
}

TEST(PassthroughSubject, TheTokenAndTheViewMayOutliveTheSubject) {
    auto subject = std::make_unique<PassthroughSubject<int>>();
    const auto view = subject->eraseToAnyPublisher();
    auto token = subject->sink([](int) {});
    subject.reset();
    token.cancel();
    int calls = 0;
    const auto late = view.sink([&](int) { ++calls; });
    EXPECT_EQ(calls, 0);
}

TEST(PassthroughSubject, ThreadsMaySendSubscribeAndCancelAtOnce) {
    const PassthroughSubject<int> subject;
    std::atomic<int> got{0};
    const auto steady = subject.sink([&](int) { ++got; });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                auto token = subject.sink([&](int) { ++got; });
                subject.send(i);
                token.cancel();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    // Each send reaches the steady subscriber and at least the sender's own.
    EXPECT_GE(got, 3 * 500 * 2);
}

}  // namespace
}  // namespace mireth
