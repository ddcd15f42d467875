// Reads what a step or a reaction does.
#pragma once

#include <chrono>
#include <span>
#include <string_view>

#include "phone/JsonNode.hpp"
#include "phone/SettingsReader.hpp"
#include "phone/Steps.hpp"

namespace mireth::phone {

// All throw ScenarioError.

platform::NetworkPath readNetwork(const JsonNode& node);
double readWindowSide(const JsonNode& node);
/// Seconds, from `shortest` to a day.
std::chrono::nanoseconds readSpan(const JsonNode& node, double shortest = 0);

/// Who carries the action out: the script, or the app in answer to a tap.
enum class Actor { script, app };

/// The one action of `node`, and its place. `otherKeys` are what `node` may have beside it; the caller reads
/// them. Whether the screens and views that are named exist is not looked at.
Instruction readInstruction(const JsonNode& node, Actor actor, std::span<const std::string_view> otherKeys,
                            const SettingsReader& settings);

}  // namespace mireth::phone
