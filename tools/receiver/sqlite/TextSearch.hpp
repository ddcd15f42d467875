// How texts are found whatever their case: folded, and by the runs of three characters that stand in them.
// Used by the embedded store.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

/// `text` in lower case, letter by letter; bytes that are not UTF-8 become U+FFFD.
std::string foldedText(std::string_view text);

/// Every run of three characters of `folded`, each once; none when it is shorter.
std::vector<std::string> gramsOf(std::string_view folded);

}  // namespace mireth::receiver
