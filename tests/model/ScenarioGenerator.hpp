// Random scenarios: runs of taps, errors, pauses and screen changes, close to the limits of the rules.
#pragma once

#include <cstdint>

#include "model/Outcome.hpp"

namespace mireth::model {

/// The scenario of this seed, as it stands in a file. The model can speak about each.
Json generateScenario(std::uint64_t seed);

}  // namespace mireth::model
