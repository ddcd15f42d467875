// The JSON forms of the viewing API; docs/receiver-api.md describes them. Used by ViewingApi.
#pragma once

#include <string>

#include "store/Records.hpp"
#include "store/SessionQuery.hpp"

namespace mireth::receiver {

std::string pageJson(const SessionPage& page);
std::string facetsJson(const Facets& facets);
std::string replayJson(const SessionContents& contents);
/// The timeline alone: the events of all chunks in one array.
std::string timelineJson(const SessionContents& contents);

}  // namespace mireth::receiver
