// What the program finds in its environment: the plugin, and what the plugin is to know.
#pragma once

#include "attach/Options.hpp"

namespace mireth::attach {

/// Sets the variables of this process. What Qt's held before is saved for the plugin, which puts it back.
void setEnvironment(const Options& options);

}  // namespace mireth::attach
