// Reads the steps of a scenario file.
#pragma once

#include <vector>

#include "phone/JsonNode.hpp"
#include "phone/SettingsReader.hpp"
#include "phone/Steps.hpp"

namespace mireth::phone {

/// In file order. Throws ScenarioError.
std::vector<Step> readSteps(const JsonNode& list, const SettingsReader& settings);

}  // namespace mireth::phone
