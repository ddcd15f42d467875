// Reads the steps of a scenario file.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "phone/JsonNode.hpp"
#include "phone/Steps.hpp"
#include "phone/ViewReader.hpp"

namespace mireth::phone {

platform::NetworkPath readNetwork(const JsonNode& node);
Size readWindowSize(const JsonNode& width, const JsonNode& height);

/// `views` has read all screens; `screenNames` are theirs. Throws ScenarioError.
std::vector<Step> readSteps(const JsonNode& list, const ViewReader& views,
                            const std::set<std::string>& screenNames);

}  // namespace mireth::phone
