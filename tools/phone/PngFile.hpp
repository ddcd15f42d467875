// PNG files: pictures that a scenario shows, and dumped frames.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "MirethVex/Platform/Image.hpp"

namespace mireth::phone {

/// Longest side of a picture that is read, in pixels.
inline constexpr unsigned maximumPictureSide = 4096;

/// The picture in `file`, with `scale` pixels per point. Throws ScenarioError for what is not a PNG file, is
/// a link, or is too large; the sides are looked at before anything is unpacked.
platform::Image readPng(const std::filesystem::path& file, double scale);

/// What went wrong, in words; nothing when the file was written.
std::optional<std::string> writePng(const platform::Image& image, const std::filesystem::path& file);

}  // namespace mireth::phone
