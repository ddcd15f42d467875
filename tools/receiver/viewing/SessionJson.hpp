// The JSON forms of the viewing API; docs/receiver-api.md describes them. Used by ViewingApi.
#pragma once

#include <string>

#include "store/Records.hpp"
#include "store/SessionQuery.hpp"
#include "viewing/SessionFacts.hpp"

namespace mireth::receiver {

std::string pageJson(const SessionPage& page);
std::string facetsJson(const Facets& facets);

/// A session's replay but for its timeline.
struct ReplayJson {
    std::string before;  ///< what stands before the timeline
    std::string after;
};
ReplayJson replayJson(const SessionContents& outline, const SessionFacts& facts);

}  // namespace mireth::receiver
