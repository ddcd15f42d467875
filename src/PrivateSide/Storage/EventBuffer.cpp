#include "PrivateSide/Storage/EventBuffer.hpp"

#include <utility>

namespace mireth {

void EventBuffer::add(const std::string& sessionId, TimelineEvent event) {
    const std::lock_guard lock(mutex_);
    buffers_[sessionId].push_back(std::move(event));
}

std::vector<TimelineEvent> EventBuffer::flush(const std::string& sessionId) {
    const std::lock_guard lock(mutex_);
    return std::exchange(buffers_[sessionId], {});
}

void EventBuffer::remove(const std::string& sessionId) {
    const std::lock_guard lock(mutex_);
    buffers_.erase(sessionId);
}

void EventBuffer::removeAll() {
    const std::lock_guard lock(mutex_);
    buffers_.clear();
}

}  // namespace mireth
