// What stands in the way of recording, said before the program runs: it is not there to be recorded, and the
// plugin in it is silent.
#pragma once

#include <string>
#include <vector>

#include "attach/Options.hpp"

namespace mireth::attach {

/// One line for each thing in the information file or among the endpoints that cannot be used.
std::vector<std::string> informationWarnings(const Options& options);

}  // namespace mireth::attach
