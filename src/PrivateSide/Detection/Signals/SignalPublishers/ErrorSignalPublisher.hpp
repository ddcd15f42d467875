// Publishes the errors that the host reports.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "MirethVex/Base/Published.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"

namespace mireth {

struct LogErrorData {
    /// Milliseconds since the Unix epoch.
    std::int64_t detectionTime = 0;
    std::optional<std::string> message;
};

/// Any thread; subscribers run on the reporting one.
class ErrorSignalPublisher {
  public:
    explicit ErrorSignalPublisher(CurrentTimeProvider currentTimeProvider)
        : currentTimeProvider_(std::move(currentTimeProvider)) {}

    AnyPublisher<std::optional<LogErrorData>> logErrorData() const {
        return logErrorData_.eraseToAnyPublisher();
    }

    void notifyLogError(std::optional<std::string> message) {
        logErrorData_ =
            std::optional(LogErrorData{currentTimeProvider_().toTimestampMillis(), std::move(message)});
    }

  private:
    const CurrentTimeProvider currentTimeProvider_;
    Published<std::optional<LogErrorData>> logErrorData_;
};

}  // namespace mireth
