// What makes a scenario unusable. Readers throw it; main prints it as one line and ends with status 1.
#pragma once

#include <stdexcept>
#include <string>

namespace mireth::phone {

/// `path` is the place in the file, such as "$.screens[0].views[2].frame"; empty for the file as a whole.
class ScenarioError : public std::runtime_error {
  public:
    ScenarioError(const std::string& path, const std::string& why)
        : std::runtime_error(path.empty() ? why : path + ": " + why) {}
};

}  // namespace mireth::phone
