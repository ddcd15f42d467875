// Reads the views of a scenario file.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "phone/JsonNode.hpp"
#include "phone/SettingsReader.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

/// Reads one file's views; remembers what has to be unique in it. Operations throw ScenarioError.
class ViewReader {
  public:
    /// `settings` outlives it.
    explicit ViewReader(const SettingsReader& settings) : settings_(settings) {}

    std::vector<ViewSpec> readViews(const JsonNode& list);
    const std::set<std::string>& ids() const noexcept { return ids_; }

  private:
    ViewSpec readView(const JsonNode& node);

    const SettingsReader& settings_;
    std::set<std::string> ids_;
    std::size_t viewCount_ = 0;
};

}  // namespace mireth::phone
