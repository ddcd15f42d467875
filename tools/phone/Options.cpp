// The options, declared and checked with CLI11.
#include "phone/Options.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "commandline/Complaint.hpp"
#include "phone/OptionValues.hpp"

namespace mireth::phone {

using commandline::notEmpty;

std::variant<Options, EarlyEnd> readOptions(int count, const char* const* arguments) {
    Options options;
    std::string speed = "real";
    std::string seed = "0";
    std::string tags;
    CLI::App app("Plays a phone from a script and lets MirethVex record it.", "mireth-phone");
    app.add_option("scenario", options.scenario, "The scenario file")
        ->required()
        ->type_name("SCENARIO.json")
        ->check(notEmpty());
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("--sr-endpoint", options.srEndpoint,
                   R"(Information dictionary "SR_ENDPOINT_URL"; no slash at the end)")
        ->type_name("URL")
        ->check(endpoint());
    app.add_option("--kelda-endpoint", options.keldaEndpoint,
                   R"(Information dictionary "KELDA_ENDPOINT_URL"; no slash at the end)")
        ->type_name("URL")
        ->check(endpoint());
    app.add_option("--ca-file", options.caFile, "Extra trusted certificate authority (PEM)")
        ->type_name("FILE")
        ->check(authorities());
    app.add_option("--caches", options.caches, "The user caches directory")
        ->type_name("DIR")
        ->check(notEmpty());
    app.add_option("--speed", speed, "real, max (virtual time) or N times real time")
        ->type_name("real|max|N");
    app.add_option("--seed", seed, "Seed of every random draw and identifier")->type_name("N");
    app.add_option("--allow-tags", tags, "Log tags whose info lines are shown")->type_name("A,B|all");
    app.add_option("--dump-frames", options.frames, "Write every captured image there as PNG")
        ->type_name("DIR")
        ->check(notEmpty());
    app.add_flag("--plain", options.plain, "Results only, as text for people; error lines on standard error")
        ->disable_flag_override();
    app.set_version_flag("--version", "mireth-phone " MIRETH_VERSION);
    try {
        app.parse(count, arguments);
        options.pace = readPace(speed);
        options.seed = readSeed(seed);
        options.allowedTags = readTags(tags);
    } catch (const CLI::CallForHelp&) {
        return EarlyEnd{app.help(), 0};
    } catch (const CLI::CallForVersion& version) {
        return EarlyEnd{std::string(version.what()) + "\n", 0};
    } catch (const CLI::ParseError& error) {
        return EarlyEnd{"mireth-phone: " + commandline::complaintOf(app, error) + "\n", 1};
    }
    return options;
}

}  // namespace mireth::phone
