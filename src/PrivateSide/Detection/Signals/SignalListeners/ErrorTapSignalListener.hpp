// Finds error taps: single taps that an error of the app follows within half a second.
#pragma once

#include <memory>
#include <optional>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/Base/AnyPublisher.hpp"
#include "PrivateSide/Collection/Timeline/SignalData.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/ErrorSignalPublisher.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Every error is held against the latest single tap, which stays the latest however many errors
/// it was paired with; what else the user does with a finger changes nothing.
class ErrorTapSignalListener {
  public:
    /// Listens from now on to both, which may go away before it does.
    ErrorTapSignalListener(MirethLog& log, const MirethGestureRecognizer& mirethGestureRecognizer,
                           const ErrorSignalPublisher& errorSignalPublisher,
                           CurrentTimeProvider currentTimeProvider);

    /// Forgets the latest tap: an error of a session belongs to no tap of the session before.
    void forget() const;

    /// A tap in a pause is none that an error could belong to, and the tap before it is the latest no more.
    void setPaused(bool isPaused) const;

    /// The last error tap; nothing before the first.
    AnyPublisher<std::optional<ErrorTapSignalData>> signalData() const;

  private:
    class Pairing;

    /// What the subscriptions work on, so that one which is running survives the end of the listener.
    const std::shared_ptr<Pairing> pairing_;
    AnyCancellable recognizedGestureSubscription_;
    AnyCancellable errorSignalSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
