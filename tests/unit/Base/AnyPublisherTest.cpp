#include "MirethVex/Base/AnyPublisher.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "MirethVex/Base/Published.hpp"

namespace mireth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Owner {
    int member = 0;
};

TEST(AnyPublisher, FilterPassesOnWhatThePredicateAccepts) {
    const PassthroughSubject<int> subject;
    std::vector<int> got;
    const auto token =
        subject.eraseToAnyPublisher().filter([](int value) { return value % 2 == 0; }).sink([&](int value) {
            got.push_back(value);
        });
    for (int i = 1; i <= 5; ++i) {
        subject.send(i);
    }
    EXPECT_THAT(got, ElementsAre(2, 4));
}

TEST(AnyPublisher, CompactMapLeavesOutWhatBecomesNothing) {
    const PassthroughSubject<int> subject;
    std::vector<std::string> got;
    const auto token = subject.eraseToAnyPublisher()
                           .compactMap([](int value) {
                               return value > 1 ? std::optional(std::to_string(value)) : std::nullopt;
                           })
                           .sink([&](const std::string& value) { got.push_back(value); });
    subject.send(1);
    subject.send(2);
    EXPECT_THAT(got, ElementsAre("2"));
}

TEST(AnyPublisher, DropFirstLeavesOutTheCurrentValueOfAPublished) {
    Published<int> value(1);
    std::vector<int> got;
    const auto token = value.eraseToAnyPublisher().dropFirst().sink([&](int next) { got.push_back(next); });
    EXPECT_THAT(got, IsEmpty());
    value = 2;
    EXPECT_THAT(got, ElementsAre(2));
}

TEST(AnyPublisher, DropFirstCountsForEachSubscriberAnew) {
    const PassthroughSubject<int> subject;
    const auto publisher = subject.eraseToAnyPublisher().dropFirst(2);
    std::vector<int> first;
    std::vector<int> second;
    const auto a = publisher.sink([&](int value) { first.push_back(value); });
    subject.send(1);
    const auto b = publisher.sink([&](int value) { second.push_back(value); });
    subject.send(2);
    subject.send(3);
    subject.send(4);
    EXPECT_THAT(first, ElementsAre(3, 4));
    EXPECT_THAT(second, ElementsAre(4));
}

TEST(AnyPublisher, DropFirstDropsNoMoreThanItsCountWhenThreadsSendAtOnce) {
    const PassthroughSubject<int> subject;
    std::atomic<int> got{0};
    const auto token = subject.eraseToAnyPublisher().dropFirst(100).sink([&](int) { ++got; });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 100; ++i) {
                subject.send(i);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(got, 300);
}

TEST(AnyPublisher, AssignCopiesIntoTheMemberOfALivingOwner) {
    Published<int> value(1);
    const auto owner = std::make_shared<Owner>();
    const auto token = value.eraseToAnyPublisher().assign(&Owner::member, std::weak_ptr(owner));
    EXPECT_EQ(owner->member, 1);
    value = 2;
    EXPECT_EQ(owner->member, 2);
}

TEST(AnyPublisher, AssignHoldsTheOwnerWeaklyAndDoesNothingOnceItIsGone) {
    Published<int> value(1);
    auto owner = std::make_shared<Owner>();
    const std::weak_ptr<Owner> weak = owner;
    const auto token = value.eraseToAnyPublisher().assign(&Owner::member, weak);
    owner.reset();
    EXPECT_TRUE(weak.expired());
    value = 2;
}

TEST(AnyPublisher, OperatorsCanBeChainedAndCancelled) {
    Published<int> value(0);
    std::vector<int> got;
    auto token = value.eraseToAnyPublisher()
                     .dropFirst()
                     .filter([](int next) { return next > 1; })
                     .compactMap([](int next) { return std::optional(next * 10); })
                     .sink([&](int next) { got.push_back(next); });
    value = 1;
    value = 2;
    token.cancel();
    value = 3;
    EXPECT_THAT(got, ElementsAre(20));
}

}  // namespace
}  // namespace mireth
