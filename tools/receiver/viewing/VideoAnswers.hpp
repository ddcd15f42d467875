// The videos that viewers ask for: one chunk's, in ranges as players fetch them, and the whole session's.
// Used by ViewingApi.
#pragma once

#include <string>

#include "exchange/Exchange.hpp"
#include "service/Services.hpp"

namespace mireth::receiver {

/// Any thread may call.
class VideoAnswers {
  public:
    explicit VideoAnswers(Services services) : services_(services) {}

    /// The video of a chunk; `name` is as in the address, "12.mp4".
    Answer chunk(const RequestHead& head, const std::string& id, const std::string& name) const;
    /// The session's chunks as one file.
    Answer whole(const RequestHead& head, const std::string& id) const;

  private:
    const Services services_;
};

}  // namespace mireth::receiver
