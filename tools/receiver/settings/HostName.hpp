// What may stand for a host on the command line. Used for the names by which viewers call the receiver.
#pragma once

#include <string_view>

namespace mireth::receiver {

/// True for a name of letters, digits, "-" and "_" with dots between them, and for an address in figures;
/// false with a scheme, a port or a path.
bool isHostName(std::string_view text);

}  // namespace mireth::receiver
