// Turns a single tap after which nothing on screen changes into a dead tap.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Base/LatestEvent.hpp"
#include "MirethVex/Base/AnyCancellable.hpp"
#include "PrivateSide/Collection/Timeline/SignalData.hpp"
#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/ViewAnalyzer.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Listens from construction to destruction. Taps are judged each on its own, in the order in
/// which they happened, when the analyzer's wait is over; what is found after this object is gone is dropped.
/// An analysis that fails is logged.
class DeadTapListener {
  public:
    DeadTapListener(MirethLog& log, const MirethGestureRecognizer& mirethGestureRecognizer,
                    std::shared_ptr<ViewAnalyzer> viewAnalyzer);

    /// The taps whose wait is not over are judged no more: they belong to the session before.
    void forget() const { ++period_->session; }

    /// A tap in a pause is none of the recording: what is found of it after the pause is dropped.
    void setPaused(bool isPaused) const { period_->isPaused = isPaused; }

    /// The last dead tap; nothing before the first.
    AnyPublisher<std::optional<DeadTapSignalData>> signalData() const {
        return signalData_->eraseToAnyPublisher();
    }

  private:
    using SignalData = LatestEvent<DeadTapSignalData>;

    /// When something happens.
    struct Period {
        /// Counts the sessions.
        std::uint64_t session = 0;
        bool isPaused = false;

        /// Whether what was tapped in `tapped` may be told of now.
        bool follows(const Period& tapped) const {
            return session == tapped.session && (isPaused || !tapped.isPaused);
        }
    };

    /// What a judgement works on, so that one which waits survives the end of the listener.
    struct Judgement {
        std::weak_ptr<SignalData> signalData;
        std::shared_ptr<const Period> now;
    };

    static void handleGesture(MirethLog& log, ViewAnalyzer& viewAnalyzer, const Judgement& judgement,
                              const GestureEvent& gesture);

    const std::shared_ptr<ViewAnalyzer> viewAnalyzer_;
    const std::shared_ptr<SignalData> signalData_;
    const std::shared_ptr<Period> period_;
    AnyCancellable recognizedGestureSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
