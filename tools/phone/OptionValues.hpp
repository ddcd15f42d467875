// Reads and checks the values of options, for the command line. Included by .cpp files only, as it names the
// parser's types.
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"

namespace mireth::phone {

// Each throws CLI::ValidationError, which names the option and quotes the value.

/// Tags by name or key, with commas between them, or "all".
std::set<LogTag> readTags(const std::string& text);
/// Seconds of the script in a real second; nothing for virtual time.
std::optional<double> readPace(const std::string& text);
std::uint64_t readSeed(const std::string& text);

// Checks of a value as it is parsed.

/// The base URL of a service.
CLI::Validator endpoint();
/// A file with certificates that can be read.
CLI::Validator authorities();

}  // namespace mireth::phone
