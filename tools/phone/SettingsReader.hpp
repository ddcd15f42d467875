// Reads the settings of a view: those it begins with, and those a `set` gives it later.
#pragma once

#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "phone/JsonNode.hpp"
#include "phone/ViewSettings.hpp"

namespace mireth::phone {

/// The keys of a view that can also be set later.
inline constexpr std::array<std::string_view, 14> settingKeys{
    "frame", "background", "color", "border",    "cornerRadius",   "opacity", "hidden",
    "clips", "text",       "font",  "alignment", "firstResponder", "image",   "animated"};

Color readColor(const JsonNode& node);

/// Operations throw ScenarioError.
class SettingsReader {
  public:
    /// `folder` is what the paths of pictures are relative to.
    explicit SettingsReader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Reads those of `settingKeys` that `node` has.
    ViewSettings read(const JsonNode& node) const;

  private:
    ImageSource readImage(const JsonNode& node) const;

    const std::filesystem::path folder_;
};

}  // namespace mireth::phone
