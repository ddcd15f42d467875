// Reads views and their settings from a scenario file.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "phone/JsonNode.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

/// The keys that a `set` step may give.
inline constexpr std::array<std::string_view, 14> settingKeys{
    "frame", "background", "color", "border",    "cornerRadius",   "opacity", "hidden",
    "clips", "text",       "font",  "alignment", "firstResponder", "image",   "animated"};

Color readColor(const JsonNode& node);

/// Reads one file's views; remembers what has to be unique in it. Operations throw ScenarioError.
class ViewReader {
  public:
    /// `folder` is what the paths of pictures are relative to.
    explicit ViewReader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    ViewSettings readSettings(const JsonNode& node) const;
    std::vector<ViewSpec> readViews(const JsonNode& list);
    const std::set<std::string>& ids() const noexcept { return ids_; }

  private:
    ViewSpec readView(const JsonNode& node);
    ImageSource readImage(const JsonNode& node) const;

    const std::filesystem::path folder_;
    std::set<std::string> ids_;
    std::size_t viewCount_ = 0;
};

}  // namespace mireth::phone
