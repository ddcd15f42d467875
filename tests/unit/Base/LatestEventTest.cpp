// Streams of events that remember the last one.
#include "Base/LatestEvent.hpp"

#include <gmock/gmock.h>

#include <vector>

namespace mireth {
namespace {

using testing::ElementsAre;

class LatestEvents : public testing::Test {
  protected:
    auto writer() {
        return [this](const int& event) { heard.push_back(event); };
    }

    LatestEvent<int> latest;
    std::vector<int> heard;
};

TEST_F(LatestEvents, BeginWithTheRememberedOne) {
    latest = 1;
    const auto subscription = events(latest.eraseToAnyPublisher()).sink(writer());
    latest = 2;
    EXPECT_THAT(heard, ElementsAre(1, 2));
}

TEST_F(LatestEvents, BeginWithTheFirstWhereNoneIsRemembered) {
    const auto subscription = events(latest.eraseToAnyPublisher()).sink(writer());
    latest = 1;
    EXPECT_THAT(heard, ElementsAre(1));
}

TEST_F(LatestEvents, AnEmptyValueIsNoEvent) {
    const auto subscription = events(latest.eraseToAnyPublisher()).sink(writer());
    latest = 1;
    latest = std::nullopt;
    latest = 1;
    EXPECT_THAT(heard, ElementsAre(1, 1));
}

TEST_F(LatestEvents, NewOnesLeaveOutTheRememberedOne) {
    latest = 1;
    const auto subscription = newEvents(latest.eraseToAnyPublisher()).sink(writer());
    EXPECT_THAT(heard, ElementsAre());
    latest = 2;
    EXPECT_THAT(heard, ElementsAre(2));
}

TEST_F(LatestEvents, NewOnesLeaveOutNothingWhereNoneIsRemembered) {
    const auto subscription = newEvents(latest.eraseToAnyPublisher()).sink(writer());
    latest = 1;
    latest = 2;
    EXPECT_THAT(heard, ElementsAre(1, 2));
}

}  // namespace
}  // namespace mireth
