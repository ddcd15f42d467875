// Puts sessions into a store directly, past the network. Used by tests that need many, or certain, sessions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Store.hpp"

namespace mireth::receiver::test {

struct StoredSession {
    std::string id;
    std::int64_t startMillis = 1'700'000'000'000;
    std::string projectId = "p1";
    /// A chunk for each, from number 0; every chunk lasts ten seconds.
    std::vector<std::vector<TimelineEvent>> chunks = {};
};

void keep(Store& store, const StoredSession& session);
/// One more chunk of ten seconds with 20 frames; fails the test when it is not kept.
void keepChunk(Store& store, const std::string& sessionId, std::int64_t number,
               const std::vector<TimelineEvent>& events, std::int64_t receivedMillis,
               const std::string& video = "video");

}  // namespace mireth::receiver::test
