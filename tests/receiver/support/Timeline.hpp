// Writes timelines event by event. Used by the tests of lists and replays.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "wire/TimelineValidator.hpp"

namespace mireth::receiver::test {

TimelineEvent tapEvent(std::int64_t timestamp = 1000);
/// "RageTap", "DeadTap" or "ErrorTap"; with a message when it is not empty.
TimelineEvent signalEvent(const std::string& id, const std::string& message = {});
TimelineEvent screenEvent(const std::string& name, const std::string& change = "appear");
TimelineEvent metadataEvent(const std::string& id, const std::string& value);

}  // namespace mireth::receiver::test
