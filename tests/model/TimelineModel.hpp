// How what happened is written down: the events of one session in wire form, chunk by chunk.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/Outcome.hpp"
#include "phone/Scenario.hpp"

namespace mireth::model {

/// A touch that was a tap.
struct Tap {
    Point point;
    std::int64_t uptimeMillis = 0;
};

/// `{"xNormalizedTo1":…,"yNormalizedTo1":…,"xOriginalPx":…,"yOriginalPx":…}` of a point of the window.
Json targetOf(Point point, const phone::Scenario& scenario);
Json metadataOf(const phone::Scenario& scenario);
Json windowDimensionsOf(const phone::Scenario& scenario);
Json screenChangeOf(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                    ScreenDetectionType detection);

/// The events of one session that no chunk has taken yet, and the chunks.
class TimelineModel {
  public:
    TimelineModel(std::string sessionId, std::vector<std::string>& sent)
        : sessionId_(std::move(sessionId)), sent_(sent) {}

    void add(std::int64_t timestamp, const char* type, Json details = nullptr);
    /// A chunk ends: its events are sent, and after them its end marker.
    void endChunk(std::int64_t timestamp);

  private:
    const std::string sessionId_;
    std::vector<std::string>& sent_;
    std::vector<Json> events_;
    int chunkNumber_ = 0;
};

}  // namespace mireth::model
