// Joins the chunks of a session into one MP4, without encoding anything again. Used by the export command,
// which runs in a process of its own: what it reads came from strangers.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/Store.hpp"

namespace mireth::receiver {

struct VideoPart {
    std::string name;  ///< in errors
    /// Called when it is the part's turn, so that no more than one is open at a time.
    std::function<Stored<std::unique_ptr<ByteSource>>()> open;
    std::int64_t atMillis = 0;    ///< where it begins in the whole
    std::int64_t mostMillis = 0;  ///< what it has beyond this is left out
};

/// Writes `output`, in order of time; where nothing is, the picture before stays. `parts` must not be empty.
/// No picture is decoded. The error names the part.
Stored<void> joinVideos(const std::vector<VideoPart>& parts, const std::string& output);

}  // namespace mireth::receiver
