// The context of a log line: short keys with texts.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace mireth {

/// Entries in the order in which they are written. A key occurs once.
using AdditionalInfo = std::vector<std::pair<std::string, std::string>>;

/// `["key": "value", …]`, keys and values in double quotes with quotes, backslashes and control characters
/// escaped, so that a value can neither break the line nor forge another entry. `[:]` when empty.
std::string describe(const AdditionalInfo& info);

}  // namespace mireth
