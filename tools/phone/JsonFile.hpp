// Reads a JSON file that may be hostile: size, depth and doubled keys are checked while it is parsed.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace mireth::phone {

inline constexpr std::size_t maximumScenarioBytes = std::size_t{8} << 20U;
inline constexpr int maximumJsonDepth = 128;

/// The bytes of a regular file of at most `maximumBytes`. Throws ScenarioError.
std::string readWholeFile(const std::filesystem::path& file, std::size_t maximumBytes, bool followLinks);

/// The value in `text`. Throws ScenarioError for what is not JSON, is nested more than `maximumJsonDepth`
/// deep, or has a key twice in one object.
nlohmann::ordered_json parseJson(const std::string& text);

}  // namespace mireth::phone
