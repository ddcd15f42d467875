// The class-name patterns that the masking rules search for.
#pragma once

#include <string_view>

namespace mireth {

enum class RegexValue { shadowViewRegex, systemInterfaceRegex, systemAlertActionRegex };

/// The pattern, in Perl syntax.
std::string_view rawValue(RegexValue pattern) noexcept;

/// True when the pattern is found anywhere in `text`; "^" stands for its very beginning only, and "." for
/// any character but a line feed. Any thread. The stack it needs does not grow with the text.
bool matches(std::string_view text, RegexValue regex);

}  // namespace mireth
