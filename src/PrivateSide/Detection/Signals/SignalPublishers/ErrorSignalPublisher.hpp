// Publishes the errors that the host reports.
#pragma once

#include <optional>
#include <utility>

#include "MirethVex/Base/Published.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/LogErrorData.hpp"

namespace mireth {

/// Main thread.
class ErrorSignalPublisher {
  public:
    /// The last error; nothing before the first.
    AnyPublisher<std::optional<LogErrorData>> logErrorData() const {
        return logErrorData_.eraseToAnyPublisher();
    }

    void notifyLogError(LogErrorData error) { logErrorData_ = std::optional(std::move(error)); }

  private:
    Published<std::optional<LogErrorData>> logErrorData_;
};

}  // namespace mireth
