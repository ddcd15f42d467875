// Reads the header lines of a multipart part and header values with parameters. Used by the multipart reader.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MultipartReader.hpp"

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

/// Reads the lines of one part's header, without the empty line at their end.
std::expected<PartHead, std::string> readPartHead(std::string_view lines);

bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace mireth::receiver
