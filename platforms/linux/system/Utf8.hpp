// Tells well-formed UTF-8. Used where texts come from files that others write.
#pragma once

#include <string_view>

namespace mireth::platform {

/// True for well-formed UTF-8 (RFC 3629): no surrogates, no overlong forms, nothing above U+10FFFF.
bool isUtf8(std::string_view text);

}  // namespace mireth::platform
