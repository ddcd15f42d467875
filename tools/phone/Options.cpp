// The options, declared and checked with CLI11.
#include "phone/Options.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <sstream>

namespace mireth::phone {

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

std::set<LogTag> readTags(const std::string& text) {
    if (text == "all") {
        return {allLogTags.begin(), allLogTags.end()};
    }
    std::set<LogTag> tags;
    std::istringstream names(text);
    for (std::string name; std::getline(names, name, ',');) {
        const auto tag = tagNamed(name);
        if (!tag) {
            throw CLI::ValidationError("--allow-tags", "there is no tag \"" + name + "\"");
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
    double pace = 0;
    if (!CLI::detail::lexical_cast(text, pace) || !(pace > 0 && pace <= fastest)) {
        throw CLI::ValidationError("--speed", "must be real, max or a number up to 1000000");
    }
    return pace;
}

CLI::Validator notEmpty() {
    return {[](const std::string& text) { return text.empty() ? std::string("must not be empty") : ""; }, ""};
}

/// A minus sign would otherwise be taken, and turned into a very large number.
CLI::Validator wholeNumber() {
    return {[](const std::string& text) {
                std::uint64_t number = 0;
                const char* const end = text.data() + text.size();
                const bool isWhole =
                    std::from_chars(text.data(), end, number) == std::from_chars_result{end, {}};
                return isWhole ? std::string() : "must be a whole number from 0 to 2^64 - 1, not " + text;
            },
            ""};
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

}  // namespace

std::variant<Options, EarlyEnd> readOptions(int count, const char* const* arguments) {
    Options options;
    std::string speed = "real";
    std::string tags;
    CLI::App app("Plays a phone from a script and lets MirethVex record it.", "mireth-phone");
    app.add_option("scenario", options.scenario, "The scenario file")->required()->type_name("SCENARIO.json");
    app.add_option("--sr-endpoint", options.srEndpoint, R"(Information dictionary "SR_ENDPOINT_URL")")
        ->type_name("URL")
        ->check(notEmpty());
    app.add_option("--kelda-endpoint", options.keldaEndpoint,
                   R"(Information dictionary "KELDA_ENDPOINT_URL")")
        ->type_name("URL")
        ->check(notEmpty());
    app.add_option("--ca-file", options.caFile, "Extra trusted certificate authority")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    app.add_option("--caches", options.caches, "The user caches directory")
        ->type_name("DIR")
        ->check(notEmpty());
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("--speed", speed, "real, max (virtual time) or N times real time")
        ->type_name("real|max|N");
    app.add_option("--seed", options.seed, "Seed of every random draw and identifier")
        ->type_name("N")
        ->check(wholeNumber());
    app.add_option("--allow-tags", tags, "Log tags whose info lines are shown")->type_name("A,B|all");
    app.add_option("--dump-frames", options.frames, "Write every captured image there as PNG")
        ->type_name("DIR");
    app.add_flag("--plain", options.plain, "Results only, as text for people");
    app.set_version_flag("--version", "mireth-phone " MIRETH_VERSION);
    try {
        app.parse(count, arguments);
        options.pace = readPace(speed);
        options.allowedTags = readTags(tags);
    } catch (const CLI::CallForHelp&) {
        return EarlyEnd{app.help(), 0};
    } catch (const CLI::CallForVersion& version) {
        return EarlyEnd{std::string(version.what()) + "\n", 0};
    } catch (const CLI::ParseError& error) {
        return EarlyEnd{"mireth-phone: " + firstLine(error.what()) + "\n", 1};
    }
    return options;
}

}  // namespace mireth::phone
