// Turns the fourth tap of a run into a rage tap.
#pragma once

#include <memory>
#include <optional>

#include "Base/LatestEvent.hpp"
#include "MirethVex/Base/AnyCancellable.hpp"
#include "PrivateSide/Collection/Timeline/SignalData.hpp"
#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Listens from construction to destruction. The platform decides which taps make a run; no
/// distance, time or count is added here.
class RageTapSignalListener {
  public:
    RageTapSignalListener(MirethLog& log, const MirethGestureRecognizer& mirethGestureRecognizer);

    /// The last rage tap; nothing before the first.
    AnyPublisher<std::optional<RageTapSignalData>> signalData() const {
        return signalData_->eraseToAnyPublisher();
    }

  private:
    const std::shared_ptr<LatestEvent<RageTapSignalData>> signalData_;
    AnyCancellable recognizedGestureSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
