// Whose certificates are trusted when a host adds an authority of its own. Used by CurlHttpClient.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace mireth::platform {

/// The system's authorities, as libcurl knows them, and those of `extraFile`, as one PEM text; the reason in
/// words when the file cannot be read, or holds no certificate or a damaged one. A system without a list adds
/// nothing.
std::expected<std::string, std::string> readAuthorities(const std::filesystem::path& extraFile);

}  // namespace mireth::platform
