#include "PrivateSide/Storage/EventBuffer.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TimelineEvent at(std::int64_t timestamp) {
    return {EventName::userInteraction, timestamp, std::nullopt};
}

TEST(EventBuffer, FlushGivesTheEventsInOrderAndLeavesNone) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    buffer.add("S1", at(2));
    buffer.add("S1", at(1));
    EXPECT_THAT(buffer.flush("S1"), ElementsAre(at(2), at(1)));
    EXPECT_THAT(buffer.flush("S1"), IsEmpty());
}

TEST(EventBuffer, FlushOfAnUnknownSessionIsEmptyAndWhatComesThenIsAllThereIs) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    EXPECT_THAT(buffer.flush("S1"), IsEmpty());
    buffer.add("S1", at(1));
    EXPECT_THAT(buffer.flush("S1"), ElementsAre(at(1)));
}

TEST(EventBuffer, SessionsAreKeptApart) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    buffer.add("S1", at(1));
    buffer.add("S2", at(2));
    EXPECT_THAT(buffer.flush("S1"), ElementsAre(at(1)));
    EXPECT_THAT(buffer.flush("S2"), ElementsAre(at(2)));
}

TEST(EventBuffer, RemoveDropsOneSession) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    buffer.add("S1", at(1));
    buffer.add("S2", at(2));
    buffer.remove("S1");
    buffer.remove("unknown");
    EXPECT_THAT(buffer.flush("S1"), IsEmpty());
    EXPECT_THAT(buffer.flush("S2"), ElementsAre(at(2)));
}

TEST(EventBuffer, RemoveAllDropsEverySession) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    buffer.add("S1", at(1));
    buffer.add("S2", at(2));
    buffer.removeAll();
    EXPECT_THAT(buffer.flush("S1"), IsEmpty());
    EXPECT_THAT(buffer.flush("S2"), IsEmpty());
}

TEST(EventBuffer, AFlushNeverSplitsOrLosesWhatThreadsAppend) {
    test::LogCapture capture;
    EventBuffer buffer(capture.log());
    constexpr int perThread = 1000;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread) {
        threads.emplace_back([&buffer, thread] {
            for (int i = 0; i < perThread; ++i) {
                buffer.add("S1", at(thread * perThread + i));
            }
        });
    }
    std::vector<TimelineEvent> got;
    const auto collect = [&] {
        const auto flushed = buffer.flush("S1");
        got.insert(got.end(), flushed.begin(), flushed.end());
    };
    for (int i = 0; i < 200; ++i) {
        collect();
    }
    for (auto& thread : threads) {
        thread.join();
    }
    collect();
    std::vector<std::int64_t> first;
    std::vector<std::int64_t> second;
    for (const auto& event : got) {
        (event.timestamp < perThread ? first : second).push_back(event.timestamp);
    }
    EXPECT_EQ(first.size(), perThread);
    EXPECT_EQ(second.size(), perThread);
    EXPECT_TRUE(std::ranges::is_sorted(first) && std::ranges::is_sorted(second));
}

}  // namespace
}  // namespace mireth
