// The lines of a part's header, without regular expressions: input is hostile and may be long.
#include "wire/PartHeadReader.hpp"

#include <algorithm>
#include <optional>

#include "base/HeaderParameters.hpp"

namespace mireth::receiver {

std::expected<PartHead, std::string> readPartHead(std::string_view lines) {
    std::optional<HeaderParameters> disposition;
    PartHead head;
    while (!lines.empty()) {
        const auto end = std::min(lines.find("\r\n"), lines.size());
        const auto line = lines.substr(0, end);
        lines.remove_prefix(std::min(lines.size(), end + 2));
        const auto colon = line.find(':');
        if (colon == std::string_view::npos || line.find_first_of("\r\n") != std::string_view::npos) {
            return std::unexpected("a part has a malformed header line");
        }
        const auto name = line.substr(0, colon);
        const auto value = trimmedValue(line.substr(colon + 1));
        if (equalsIgnoringCase(name, "Content-Disposition")) {
            if (disposition) {
                return std::unexpected("a part has two Content-Disposition lines");
            }
            disposition = headerParameters(value);
            if (!disposition) {
                return std::unexpected("a part has a malformed Content-Disposition line");
            }
        } else if (equalsIgnoringCase(name, "Content-Type")) {
            head.contentType = std::string(value);
        }
    }
    if (!disposition || !equalsIgnoringCase(disposition->value, "form-data")) {
        return std::unexpected("a part lacks its form-data Content-Disposition line");
    }
    auto name = disposition->find("name");
    if (!name) {
        return std::unexpected("a part lacks its name");
    }
    head.name = std::move(*name);
    head.filename = disposition->find("filename");
    return head;
}

}  // namespace mireth::receiver
