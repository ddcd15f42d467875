// How the names of header fields compare.
#include "MirethVex/Platform/HttpClient.hpp"

#include <algorithm>

namespace mireth::platform {

namespace {

/// Independent of the process's locale.
char lowerAscii(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

bool CaseInsensitiveLess::operator()(std::string_view left, std::string_view right) const noexcept {
    return std::ranges::lexicographical_compare(left, right, {}, lowerAscii, lowerAscii);
}

}  // namespace mireth::platform
