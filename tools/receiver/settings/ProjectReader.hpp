// Reads the settings of projects. Used by Config. Included by .cpp files only, as it names the JSON library's
// type.
#pragma once

#include <string>

#include "settings/Config.hpp"
#include "settings/ConfigValues.hpp"

namespace mireth::receiver {

/// The project settings among the members of `object`; `defaults` holds what the keys that are left out mean.
/// Throws ConfigComplaint, as does the other.
ProjectSettings readProjectSettings(const ConfigJson& object, ProjectSettings defaults,
                                    const std::string& where);

/// Adds the projects of `list`, which inherit from `config`'s fallback.
void readProjects(const ConfigJson& list, Config& config);

}  // namespace mireth::receiver
