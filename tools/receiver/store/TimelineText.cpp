// Joined by hand: the details are JSON text already, and a type is one of a few plain words.
#include "store/TimelineText.hpp"

namespace mireth::receiver {

std::string timelineText(const std::vector<TimelineEvent>& events, std::int64_t chunkNumber) {
    std::string text = "[";
    for (const auto& event : events) {
        text += text.size() > 1 ? "," : "";
        text += R"({"timestamp":)" + std::to_string(event.timestamp) + R"(,"type":")" + event.type + '"';
        if (!event.details.empty()) {
            text += R"(,"eventDetails":)" + event.details;
        }
        text += R"(,"chunkNumber":)" + std::to_string(chunkNumber) + "}";
    }
    return text + "]";
}

}  // namespace mireth::receiver
