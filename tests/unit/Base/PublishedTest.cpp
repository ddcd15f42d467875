#include "MirethVex/Base/Published.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace mireth {
namespace {

using testing::ElementsAre;

TEST(Published, ANewSubscriberFirstGetsTheCurrentValue) {
    Published<int> value(1);
    value = 2;
    std::vector<int> got;
    const auto token = value.sink([&](int next) { got.push_back(next); });
    EXPECT_THAT(got, ElementsAre(2));
    value = 3;
    EXPECT_THAT(got, ElementsAre(2, 3));
    EXPECT_EQ(value.value(), 3);
}

TEST(Published, AnEqualValueIsSentToo) {
    Published<int> value(1);
    std::vector<int> got;
    const auto token = value.sink([&](int next) { got.push_back(next); });
    value = 1;
    EXPECT_THAT(got, ElementsAre(1, 1));
}

TEST(Published, AfterCancellingNothingComes) {
    Published<int> value(1);
    std::vector<int> got;
    auto token = value.sink([&](int next) { got.push_back(next); });
    token.cancel();
    value = 2;
    EXPECT_THAT(got, ElementsAre(1));
}

TEST(Published, TheReceiverSeesTheNewValueInTheObjectToo) {
    Published<int> value(0);
    int seen = -1;
    const auto token = value.sink([&](int) { seen = value.value(); });
    value = 7;
    EXPECT_EQ(seen, 7);
}

TEST(Published, AReceiverMayAssignAgain) {
    Published<int> value(0);
    std::vector<int> got;
    const auto token = value.sink([&](int next) {
        got.push_back(next);
        if (next == 1) {
            value = 2;
        }
    });
    value = 1;
    EXPECT_THAT(got, ElementsAre(0, 1, 2));
}

TEST(Published, AValueThatTheNewSubscriberAssignsItselfReachesIt) {
    Published<int> value(0);
    std::vector<int> got;
    const auto token = value.sink([&](int next) {
        got.push_back(next);
        if (next == 0) {
            value = 1;
        }
    });
    EXPECT_THAT(got, ElementsAre(0, 1));
}

TEST(Published, AReceiverMayDestroyIt) {
    auto value = std::make_unique<Published<int>>(0);
    int last = -1;
    const auto token = value->sink([&](int next) {
        last = next;
        if (next == 1) {
            value.reset();
        }
    });
    *value = 1;
    EXPECT_EQ(last, 1);
}

TEST(Published, TheViewOutlivesItAndKeepsTheLastValue) {
    auto value = std::make_unique<Published<int>>(1);
    const auto view = value->eraseToAnyPublisher();
    *value = 5;
    value.reset();
    std::vector<int> got;
    const auto token = view.sink([&](int next) { got.push_back(next); });
    EXPECT_THAT(got, ElementsAre(5));
}

TEST(Published, ASubscriberMadeWhileAnotherThreadAssignsEndsWithTheLastValue) {
    for (int round = 0; round < 200; ++round) {
        Published<int> value(0);
        std::atomic<bool> begin{false};
        std::thread assigning([&] {
            while (!begin) {
            }
            for (int i = 1; i <= 20; ++i) {
                value = i;
            }
        });
        std::atomic<int> last{-1};
        begin = true;
        const auto token = value.sink([&](int next) {
            int before = last;
            while (before < next && !last.compare_exchange_weak(before, next)) {
            }
        });
        assigning.join();
        ASSERT_EQ(last, 20);
    }
}

}  // namespace
}  // namespace mireth
