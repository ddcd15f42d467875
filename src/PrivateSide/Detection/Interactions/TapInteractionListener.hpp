// Turns single taps into tap interactions.
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

/// Main thread. Listens from construction to destruction.
class TapInteractionListener {
  public:
    TapInteractionListener(MirethLog& log, const MirethGestureRecognizer& mirethGestureRecognizer);

    /// The last tap; nothing before the first.
    AnyPublisher<std::optional<TapInteractionData>> interactionData() const {
        return interactionData_->eraseToAnyPublisher();
    }

  private:
    const std::shared_ptr<LatestEvent<TapInteractionData>> interactionData_;
    AnyCancellable recognizedGestureSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
