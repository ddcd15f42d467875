// A reader or a check for each kind of value.
#include "phone/OptionValues.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <utility>

#include "commandline/Complaint.hpp"
#include "platforms/linux/network/CertificateAuthorities.hpp"
#include "platforms/linux/network/EndpointCheck.hpp"

namespace mireth::phone {

using commandline::inQuotes;

namespace {

/// A tag's case name, such as "memoryUse", or its key in the log, such as "MEMORY_USE".
std::optional<LogTag> tagNamed(const std::string& name) {
    static constexpr std::array<std::pair<std::string_view, LogTag>, 7> names{
        {{"memoryUse", LogTag::memoryUse},
         {"lifecycle", LogTag::lifecycle},
         {"gesture", LogTag::gesture},
         {"signal", LogTag::signal},
         {"playback", LogTag::playback},
         {"network", LogTag::network},
         {"navigation", LogTag::navigation}}};
    const auto found = std::ranges::find_if(
        names, [&name](const auto& tag) { return tag.first == name || key(tag.second) == name; });
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

/// The number that `text` is from its first character to its last.
template <class Number>
std::optional<Number> wholly(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::set<LogTag> readTags(const std::string& text) {
    if (text == "all") {
        return {allLogTags.begin(), allLogTags.end()};
    }
    std::set<LogTag> tags;
    std::istringstream names(text);
    for (std::string name; std::getline(names, name, ',');) {
        const auto tag = tagNamed(name);
        if (!tag) {
            throw CLI::ValidationError("--allow-tags", "there is no tag " + inQuotes(name));
        }
        tags.insert(*tag);
    }
    return tags;
}

std::optional<double> readPace(const std::string& text) {
    if (text == "real") {
        return 1.0;
    }
    if (text == "max") {
        return std::nullopt;
    }
    constexpr double fastest = 1e6;
    const auto pace = wholly<double>(text);
    if (!pace || !(*pace > 0 && *pace <= fastest)) {
        throw CLI::ValidationError(
            "--speed", "must be real, max or a number above 0 and up to 1000000, not " + inQuotes(text));
    }
    return pace;
}

std::uint64_t readSeed(const std::string& text) {
    const auto seed = wholly<std::uint64_t>(text);
    if (!seed) {
        throw CLI::ValidationError(
            "--seed", "must be a whole number from 0 to 18446744073709551615, not " + inQuotes(text));
    }
    return *seed;
}

CLI::Validator endpoint() {
    // With whom plain http is spoken is for the library to say, in the script's results.
    return {[](const std::string& text) { return platform::complaintAboutEndpoint(text, true); }, ""};
}

CLI::Validator authorities() {
    return {[](const std::string& text) {
                const auto read = platform::readAuthorities(text);
                return read ? std::string() : read.error();
            },
            ""};
}

}  // namespace mireth::phone
