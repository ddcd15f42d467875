// How often objects of Qt's own classes that a window shows have told of a change.
#pragma once

#include <QObject>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>

#include "platforms/qt/state/SignalCounter.hpp"

namespace mireth::qt {

/// An object is listened to as long as it is asked for in every pass. Main thread only.
class SignalCounts {
  public:
    /// Since it was asked for first. `indexes`, of its signals, are the same at each call for the object.
    std::uint64_t of(const QObject& sender, std::span<const int> indexes);

    /// Lets go of the objects that were not asked for since the last call.
    void endPass();

  private:
    struct Kept {
        std::unique_ptr<SignalCounter> counter;
        bool wasSeen = false;
    };

    /// An object may be gone, and another one have come to lie at its place.
    std::unordered_map<const QObject*, Kept> kept_;
};

}  // namespace mireth::qt
