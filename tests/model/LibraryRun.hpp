// Plays a scenario on the scripted phone with the whole library in it, in virtual time and in this process.
#pragma once

#include "model/Outcome.hpp"
#include "phone/Scenario.hpp"

namespace mireth::model {

/// What the service, the host and a log listener got. Throws phone::ScenarioError for a scenario that cannot
/// be played.
Outcome playInProcess(const phone::Scenario& scenario);

}  // namespace mireth::model
