// Publishes when the application moves to the background.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Base/LatestEvent.hpp"
#include "MirethVex/Platform/Application.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Observes from construction to destruction.
class AppLifecycleObserver {
  public:
    AppLifecycleObserver(MirethLog& log, platform::Application& application,
                         CurrentTimeProvider currentTimeProvider);

    /// The last move to the background, in milliseconds since the Unix epoch; nothing before the first. As
    /// with every published value, a new subscriber first gets the move it remembers.
    AnyPublisher<std::optional<std::int64_t>> appMovedToBackground() const {
        return appMovedToBackground_->eraseToAnyPublisher();
    }

  private:
    const std::shared_ptr<LatestEvent<std::int64_t>> appMovedToBackground_;
    AnyCancellable subscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
