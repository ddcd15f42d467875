// What the timeline of a session says once or seldom: the window's size and the device's data. Read for the
// replay.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "store/Records.hpp"
#include "store/Store.hpp"

namespace mireth::receiver {

struct SessionFacts {
    std::string window = "null";                  ///< as JSON
    std::map<std::string, std::string> metadata;  ///< values by their ids

    /// Takes what the timeline of one chunk says; the last word counts, so chunks are given by number.
    void take(std::string_view timeline);
};

/// Those of the session, one timeline held at a time.
Stored<SessionFacts> readFacts(Store& store, const SessionContents& outline);

}  // namespace mireth::receiver
