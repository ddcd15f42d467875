// Foretells what a scenario must leave behind, from the rules alone.
#pragma once

#include <optional>
#include <string>

#include "model/Outcome.hpp"
#include "model/Rules.hpp"
#include "phone/Scenario.hpp"

namespace mireth::model {

/// Why the model says nothing about this scenario; nothing when it does. It knows no resets, no lost networks
/// and no resized windows, and wants a session to be over at the end, and a start or a stop to be the last
/// thing of its turn.
std::optional<std::string> reasonToPass(const phone::Scenario& scenario);

/// For a scenario that there is no reason to pass.
Outcome foretell(const phone::Scenario& scenario, const Rules& rules = {});

}  // namespace mireth::model
