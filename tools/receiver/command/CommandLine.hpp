// The command line of mireth-receiver: what its words mean and which command they call.
#pragma once

#include <iosfwd>
#include <string>

namespace mireth::receiver {

/// Runs the program. SIGTERM and SIGINT must be blocked in every thread. Returns the exit status: 0, or 1
/// with a line on `errors` that says what was unusable.
int runCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& errors);

/// `$XDG_DATA_HOME/mireth-receiver`, else `~/.local/share/mireth-receiver`.
std::string defaultDataDirectory();

}  // namespace mireth::receiver
