// Holds each session's timeline events until the chunk they belong to is finished.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Any thread. The serial queue "EventBuffer" of this class is a lock: every operation waits for the one
/// before it and none waits for anything else, so that a flush never splits an append.
class EventBuffer {
  public:
    /// For those who look for the queue by its name; a lock has none.
    static constexpr std::string_view queueLabel = "EventBuffer";

    explicit EventBuffer(MirethLog& log) : memoryUse_(log, "PrivateSide/Storage/EventBuffer") {}

    void add(const std::string& sessionId, TimelineEvent event);
    /// The session's events since the last flush; it has none left afterwards.
    std::vector<TimelineEvent> flush(const std::string& sessionId);
    void remove(const std::string& sessionId);
    void removeAll();

  private:
    const MemoryUseLines memoryUse_;
    std::mutex mutex_;
    std::map<std::string, std::vector<TimelineEvent>> buffers_;  // guarded by mutex_
};

}  // namespace mireth
