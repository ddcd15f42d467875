// Random touches for random scenarios, and what an app does around them.
#pragma once

#include "MirethVex/Base/Geometry.hpp"
#include "model/Chance.hpp"
#include "model/ScreenGenerator.hpp"
#include "model/ScriptWriter.hpp"

namespace mireth::model {

/// A step that logs an error, with a message or without one.
Json makeError(Chance& chance);

class TouchGenerator {
  public:
    /// `wait` is how long the device gives an app to react. All outlive it.
    TouchGenerator(Chance& chance, ScreenGenerator& screens, ScriptWriter& script, Micros wait)
        : chance_(chance), screens_(screens), script_(script), wait_(wait) {}

    /// Taps, swipes or cancelled touches from now on. Time may pass.
    void act();

  private:
    void tapRun();
    void tapsBesideEachOther();
    void tapsAtOnce();
    void otherTouch();
    void tapAndErrors();
    void tapAndChange();
    Json makeTap();
    Json makeSwipe();

    Chance& chance_;
    ScreenGenerator& screens_;
    ScriptWriter& script_;
    const Micros wait_;
};

}  // namespace mireth::model
