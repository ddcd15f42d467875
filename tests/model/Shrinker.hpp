// Makes a scenario smaller for as long as it stays interesting.
#pragma once

#include <functional>

#include "model/Outcome.hpp"

namespace mireth::model {

/// A smaller scenario for which `isInteresting` is still true, as it is for `scenario`: without the steps,
/// reactions, views, screens and settings that do not matter, and with no more time and repetition than
/// needed. No single one of them, and no two steps, can be left out.
Json shrink(Json scenario, const std::function<bool(const Json&)>& isInteresting);

}  // namespace mireth::model
