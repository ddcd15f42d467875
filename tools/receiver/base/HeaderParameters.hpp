// Takes header values with parameters apart, as RFC 2045 and RFC 9110 write them. Used for multipart bodies
// and wherever a header's words are compared.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mireth::receiver {

/// A header value such as `form-data; name="a"`, taken apart.
struct HeaderParameters {
    std::string value;
    std::vector<std::pair<std::string, std::string>> parameters;

    /// The parameter's text, names compared without case; none when it is absent.
    std::optional<std::string> find(std::string_view name) const;
};

/// None when the text is not a value with `; name=token` or `; name="text"` parameters, each name once.
/// Within quotes a backslash is an ordinary character, as it is in what form senders write.
std::optional<HeaderParameters> headerParameters(std::string_view text);

/// `text` without the spaces and tabs around it.
std::string_view trimmedValue(std::string_view text);

bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace mireth::receiver
