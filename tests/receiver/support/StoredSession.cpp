// What RecordPlayback does once everything has been checked.
#include "support/StoredSession.hpp"

#include <gtest/gtest.h>

#include "support/Timeline.hpp"

namespace mireth::receiver::test {

void keep(Store& store, const StoredSession& session) {
    ASSERT_EQ(store.addSession({.id = session.id,
                                .brandId = "b1",
                                .brandDc = "US_WEST",
                                .projectId = session.projectId,
                                .startMillis = session.startMillis,
                                .closedMillis = {}}),
              true);
    for (std::size_t i = 0; i < session.chunks.size(); ++i) {
        const auto number = static_cast<std::int64_t>(i);
        keepChunk(store, session.id, number, session.chunks[i], session.startMillis + 10'000 * (number + 1));
    }
}

void keepChunk(Store& store, const std::string& sessionId, std::int64_t number,
               const std::vector<TimelineEvent>& events, std::int64_t receivedMillis,
               const std::string& video) {
    const auto incoming = store.beginVideo();
    ASSERT_TRUE(incoming) << incoming.error();
    ASSERT_EQ((*incoming)->append(video), true);
    const auto outcome =
        store.putChunk(sessionId, chunkOf(number, events, receivedMillis), summarise(events), **incoming, {});
    ASSERT_TRUE(outcome) << outcome.error();
    ASSERT_EQ(*outcome, PutOutcome::kept);
}

}  // namespace mireth::receiver::test
