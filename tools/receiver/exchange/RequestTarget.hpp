// Takes the target of a request line apart. Used for routing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

struct RequestTarget {
    std::vector<std::string>
        segments;       ///< of the path, each decoded after splitting, so "%2F" splits nothing
    std::string query;  ///< still encoded

    /// The decoded value of the first query item of that name; none when there is none or it does not decode.
    std::optional<std::string> queryItem(std::string_view name) const;
    /// The same as forms and URLSearchParams encode it, where "+" is a space.
    std::optional<std::string> formItem(std::string_view name) const;
};

/// None when `target` does not begin with "/", or an escape in its path is malformed.
std::optional<RequestTarget> parseTarget(std::string_view target);

}  // namespace mireth::receiver
