// The numbers in the rules of detection. The model keeps to them; a test that wants to see a difference
// changes one.
#pragma once

#include <chrono>
#include <cstdint>

namespace mireth::model {

struct Rules {
    /// The tap of a run that shows rage.
    int rageTap = 4;
    /// An error less than this after a tap belongs to it.
    std::int64_t errorMillis = 500;
    /// Sides and places of frames may differ by less than this, in points.
    double frameTolerance = 5.0;
    /// How long an app may take to react to a tap.
    std::chrono::milliseconds slowDeviceWait{2000};
    std::chrono::milliseconds averageDeviceWait{1500};
    std::chrono::milliseconds fastDeviceWait{1000};
    /// Frames of a full chunk, and the time between two.
    int framesPerChunk = 20;
    std::chrono::milliseconds framePause{500};

    // Rules that do not hold; a test that wants to see a difference lets one.
    bool alphaCounts = false;
    bool placesMayDiffer = false;
    bool tapsPairOnce = false;
    bool rageGoesOn = false;
    bool pauseLetsPass = false;
    bool tapsInPausesCount = false;
};

}  // namespace mireth::model
