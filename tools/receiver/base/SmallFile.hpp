// Reads what the operator names on the command line: the configuration, tokens, PEM files.
#pragma once

#include <cstddef>
#include <expected>
#include <string>

namespace mireth::receiver {

/// The bytes of `path`, `most` at most. The error names the file and why, in the system's
/// words where it is the system's.
std::expected<std::string, std::string> readSmallFile(const std::string& path, std::size_t most);

}  // namespace mireth::receiver
