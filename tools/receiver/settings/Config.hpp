// What the operator's configuration file says: the projects and how each is to be recorded, and the limits.
// Read once at start; constant afterwards.
#pragma once

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/Limits.hpp"
#include "settings/ProjectSettings.hpp"
#include "settings/RetentionRules.hpp"

namespace mireth::receiver {

struct Config {
    /// Used for a project that `projects` does not name; none: such a project is unknown.
    std::optional<ProjectSettings> fallback = ProjectSettings{};
    /// Keyed by brand id and project id.
    std::map<std::pair<std::string, std::string>, ProjectSettings> projects;
    Limits limits;
    RetentionRules retention;
    /// What was read but can hardly be meant, one line each.
    std::vector<std::string> warnings;

    /// The project's settings, or null when the project is unknown. Valid as long as this object.
    const ProjectSettings* find(const std::string& brandId, const std::string& projectId) const;

    /// Whose rates and budget a project draws on: its own when it is listed. The others share one, with empty
    /// ids, as anybody can make names up.
    std::pair<std::string, std::string> payerOf(const std::string& brandId,
                                                const std::string& projectId) const;

    /// Reads `path`. An error names the file, the key and what is wrong with it.
    static std::expected<Config, std::string> read(const std::string& path);
    /// The same from text; `source` is the name that errors give it.
    static std::expected<Config, std::string> parse(std::string_view text, const std::string& source);
};

}  // namespace mireth::receiver
