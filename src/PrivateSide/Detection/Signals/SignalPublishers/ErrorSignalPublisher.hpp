// Publishes the errors that the host reports.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "Base/LatestEvent.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/LogErrorData.hpp"

namespace mireth {

/// Main thread.
class ErrorSignalPublisher {
  public:
    /// Has the errors that other threads reported until now, and that still wait for the main thread, come
    /// in.
    using TakeWaiting = std::function<void()>;

    explicit ErrorSignalPublisher(TakeWaiting takeWaiting = [] {}) : takeWaiting_(std::move(takeWaiting)) {}

    /// May be called when the publisher is gone.
    const TakeWaiting& takeWaiting() const noexcept { return takeWaiting_; }

    /// The last error; nothing before the first.
    AnyPublisher<std::optional<LogErrorData>> logErrorData() const {
        return logErrorData_.eraseToAnyPublisher();
    }

    void notifyLogError(LogErrorData error) { logErrorData_ = std::optional(std::move(error)); }

  private:
    const TakeWaiting takeWaiting_;
    LatestEvent<LogErrorData> logErrorData_;
};

}  // namespace mireth
