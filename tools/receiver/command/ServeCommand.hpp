// Runs the receiver until it is told to end. What `mireth-receiver` does without a subcommand.
#pragma once

#include <iosfwd>

#include "command/ServeOptions.hpp"

namespace mireth::receiver {

/// Serves until SIGTERM or SIGINT, which must be blocked in every thread already; then finishes what is in
/// flight. Returns the exit status: 0 after that, 1 when it could not begin, with one line on `errors`.
int serve(const ServeOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace mireth::receiver
