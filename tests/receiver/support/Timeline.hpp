// Writes timelines event by event, and the chunks that carry them. Used by the tests of lists and replays and
// by their benchmark.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Records.hpp"
#include "wire/TimelineValidator.hpp"

namespace mireth::receiver::test {

TimelineEvent tapEvent(std::int64_t timestamp = 1000);
/// "RageTap", "DeadTap" or "ErrorTap"; with a message when it is not empty.
TimelineEvent signalEvent(const std::string& id, const std::string& message = {});
TimelineEvent screenEvent(const std::string& name, const std::string& change = "appear");
TimelineEvent metadataEvent(const std::string& id, const std::string& value);

/// A chunk of ten seconds with 20 frames, its end stamped when it was received.
Chunk chunkOf(std::int64_t number, const std::vector<TimelineEvent>& events, std::int64_t receivedMillis);

}  // namespace mireth::receiver::test
