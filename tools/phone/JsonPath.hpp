// Places in a JSON document as complaints name them, such as $.screens[0].views[2].frame.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mireth::phone {

/// The place of the member `key` of the object at `path`.
std::string memberPath(const std::string& path, std::string_view key);
/// The place of an element of the list at `path`.
std::string elementPath(const std::string& path, std::size_t index);

/// `text` between double quotes as it may stand in one line, whatever is in it: escaped, and cut at 80 bytes.
std::string quotedText(std::string_view text);

}  // namespace mireth::phone
