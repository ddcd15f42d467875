// The error of the recording pipeline.
#pragma once

#include <stdexcept>

namespace mireth {

/// Thrown inside the recording pipeline and caught at its edge. `what()` is the message for the log.
class RecordingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;

    /// The playback store holds as many files as it may.
    static RecordingError playbackStorageFull() { return RecordingError("Playback storage is full"); }
};

}  // namespace mireth
