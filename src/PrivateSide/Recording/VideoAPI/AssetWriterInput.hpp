// Lets the encoder wait until the platform's writer input asks for more frames.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

/// Works on a serial executor of its own, where the readiness callbacks run too: one thing at a time, without
/// a lock. Operations may be awaited on any executor, one at a time, and come back to it.
class AssetWriterInput {
  public:
    /// For those who look for the serial executor by its name; executors have none.
    static constexpr std::string_view queueLabel =
        "com.mireth.vex.MirethVex.ImageToVideoConverter.AVAssetWriterInput";

    /// `executor`: the background, on which the serial executor is made.
    AssetWriterInput(std::shared_ptr<platform::WriterInput> input, const Executor& executor);

    /// Completes when the input is ready for a frame; with false when it has let go of its readiness callback
    /// and takes none any more.
    Task<bool> readyForMoreMediaData() const;
    /// Tells the input that no frame follows. A wait that is still on ends as when the input has let go.
    Task<void> markAsFinished() const;

  private:
    struct State;
    static Task<bool> awaitReadiness(std::shared_ptr<State> state);
    static Task<void> finish(std::shared_ptr<State> state);
    std::shared_ptr<State> state_;
};

}  // namespace mireth
