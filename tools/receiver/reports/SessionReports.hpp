// What `list` and `show` print of what came in: complete JSON for programs, aligned text for people.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "store/Records.hpp"

namespace mireth::receiver {

/// Everything that `list` shows.
struct Inventory {
    std::vector<SessionSummary> sessions;
    std::vector<LogLine> strayLogLines;  ///< lines that belong to no known session
};

/// Where the video of this key lies, for the person who looks for it: a path, an address.
using VideoPlaces = std::function<std::string(const std::string& key)>;

/// One JSON object and a line end. Its form is described in docs/receiver.md.
void writeListJson(std::ostream& out, const Inventory& inventory);
void writeShowJson(std::ostream& out, const SessionContents& contents, const VideoPlaces& videos);

/// Text whose columns line up; stored text is made printable.
void writeListText(std::ostream& out, const Inventory& inventory);
void writeShowText(std::ostream& out, const SessionContents& contents, const VideoPlaces& videos);

}  // namespace mireth::receiver
