// Searches class names with Boost.Regex: std::regex recurses once a character, and names are the host's.
#include "PrivateSide/Extensions/CALayerExtensions/RegexValue.hpp"

#include <array>
#include <boost/regex.hpp>
#include <cstddef>

namespace mireth {

namespace {

constexpr std::array<std::string_view, 3> patterns{"^_.*ShadowView.*", "^_UIInterfaceAction*",
                                                   "_UIAlertControllerActionView"};

}  // namespace

std::string_view rawValue(RegexValue pattern) noexcept {
    return patterns[static_cast<std::size_t>(pattern)];
}

bool matches(std::string_view text, RegexValue regex) {
    // Compiled anew each time: callers remember the answer for each class, so this runs once a class.
    const std::string_view pattern = rawValue(regex);
    const boost::regex compiled(pattern.begin(), pattern.end());
    return boost::regex_search(text.begin(), text.end(), compiled,
                               boost::match_single_line | boost::match_not_dot_newline);
}

}  // namespace mireth
