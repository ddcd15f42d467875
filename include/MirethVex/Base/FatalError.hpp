// The answer to a programming error: one line on standard error, then abort.
#pragma once

#include <string_view>

#include "MirethVex/Base/Export.hpp"

namespace mireth {

/// Writes "Fatal error: " and `message` to standard error and aborts the process. For programming errors
/// only (an overflowing counter, a zero frame rate); bad input and failing services are results instead.
/// Any thread.
[[noreturn]] MIRETH_EXPORT void fatalError(std::string_view message) noexcept;

}  // namespace mireth
