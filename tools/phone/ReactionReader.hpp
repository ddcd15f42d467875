// Reads what a view does when it is tapped.
#pragma once

#include <vector>

#include "phone/JsonNode.hpp"
#include "phone/SettingsReader.hpp"
#include "phone/Steps.hpp"

namespace mireth::phone {

/// In file order; there may be none. Throws ScenarioError.
std::vector<Reaction> readReactions(const JsonNode& list, const SettingsReader& settings);

}  // namespace mireth::phone
