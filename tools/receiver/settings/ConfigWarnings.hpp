// What the configuration file says that can be carried out but hardly be meant. Used by Config.
#pragma once

#include <string>
#include <vector>

#include "settings/Config.hpp"

namespace mireth::receiver {

/// One line each, naming the key.
std::vector<std::string> warningsAbout(const Config& config);

}  // namespace mireth::receiver
