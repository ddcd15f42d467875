// Compares the library with the model, scenario by scenario.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "model/Outcome.hpp"
#include "model/Rules.hpp"

namespace mireth::model {

/// What the library does otherwise than the rules say.
struct Difference {
    /// The shortest scenario found that shows it.
    Json scenario;
    Outcome expected;
    Outcome actual;
};

/// Plays a scenario, whose pictures are relative to `folder`. Nothing when the library keeps to the rules.
/// Throws phone::ScenarioError for one that cannot be played or that the model does not know.
std::optional<Difference> compare(const Json& scenario, const std::filesystem::path& folder,
                                  const Rules& rules = {});

/// The scenarios of the seeds `first` to `first + count − 1`, until one shows a difference; that one is
/// shortened.
std::optional<Difference> findDifference(std::uint64_t first, std::uint64_t count, const Rules& rules = {});

/// Writes the scenario into a file of its own in `folder`, for mireth-phone, and says what differs.
std::string report(const Difference& difference, const std::filesystem::path& folder);

}  // namespace mireth::model
