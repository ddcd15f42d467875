// Puts the scripted phone, the real parts and the library together, and runs the script.
#include "phone/Phone.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "MirethVex/Linux/LinuxPlatform.hpp"
#include "phone/FrameDump.hpp"
#include "phone/OptionError.hpp"
#include "phone/ProgressLine.hpp"
#include "phone/Reporter.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScreenSet.hpp"
#include "phone/ScriptRunner.hpp"

namespace mireth::phone {

namespace {

platform::PlatformServices makeRealParts(const Options& options) {
    platform::LinuxPlatformOptions parts;
    // The script's own; nothing is taken from files of this machine.
    parts.information.emplace();
    parts.idiom = platform::UserInterfaceIdiom::phone;
    parts.cachesDirectory = options.caches;
    parts.extraCaFile = options.caFile;
    return platform::LinuxPlatform(std::move(parts)).services();
}

/// Without the directory a session would run and deliver nothing. What is in it is the library's business.
void requireCaches(platform::FileManager& files) {
    const auto caches = files.userCachesDirectory();
    if (!caches) {
        throw OptionError("--caches", caches.error().description);
    }
    std::error_code unknown;
    if (std::filesystem::is_directory(*caches, unknown)) {
        return;
    }
    if (const auto made = files.createDirectory(*caches); !made) {
        throw OptionError("--caches", made.error().description);
    }
}

headless::HeadlessOptions describePhone(const Options& options, const Scenario& scenario) {
    const auto real = makeRealParts(options);
    requireCaches(*real.files);
    headless::HeadlessOptions phone;
    phone.pace = options.pace;
    phone.epochMillis = scenario.epochMillis;
    phone.uptimeSeconds = scenario.uptimeSeconds;
    phone.seed = options.seed;
    phone.device = scenario.device;
    phone.information = scenario.bundle;
    if (options.srEndpoint) {
        phone.information[std::string(platform::information_keys::srEndpointUrl)] = *options.srEndpoint;
    }
    if (options.keldaEndpoint) {
        phone.information[std::string(platform::information_keys::keldaEndpointUrl)] = *options.keldaEndpoint;
    }
    phone.userDefaults = scenario.userDefaults;
    phone.network = scenario.network;
    phone.files = real.files;
    phone.assetWriters = real.assetWriters;
    phone.graphics = real.graphics;
    if (options.frames) {
        phone.graphics = std::make_shared<FrameDump>(real.graphics, *options.frames);
    }
    phone.threads = real.background;
    phone.http = real.http;
    return phone;
}

double lengthOf(const Scenario& scenario) {
    const auto last = std::ranges::max_element(scenario.steps, {}, &Step::at);
    return last == scenario.steps.end() ? 0 : static_cast<double>(last->at.count()) / 1e9;
}

int conclude(const Options& options, const ScriptOutcome& outcome) {
    for (const auto& line : outcome.surprises) {
        std::fprintf(stderr, "mireth-phone: %s: %s\n", options.scenario.c_str(), line.c_str());
    }
    return outcome.surprises.empty() ? 0 : 2;
}

}  // namespace

int runPhone(const Options& options, const LibraryMaker& makeLibrary) {
    const Scenario scenario = readScenario(options.scenario);
    ScreenSet screens(scenario);
    headless::HeadlessPlatform phone(describePhone(options, scenario));
    const auto library = makeLibrary(phone.services());
    // The library keeps its listener for good, and may log while it is taken down.
    const std::shared_ptr<Reporter> reporter =
        options.plain ? makePlainReporter(stdout, stderr) : makeJsonReporter(stdout);
    library->addLogListener([weak = std::weak_ptr(reporter), queue = std::weak_ptr(phone.sharedQueue())](
                                LogTag tag, LogLevel level, const std::string& line) {
        const auto receiver = weak.lock();
        const auto clock = queue.lock();
        if (receiver && clock) {
            receiver->log(clock->now(), tag, level, line);
        }
    });
    library->setAllowedLoggingTags(options.allowedTags);
    ScriptRunner runner(scenario, phone, screens, *library, *reporter);
    const ProgressLine progress(phone.queue(), scenario.name, lengthOf(scenario));
    const ScriptOutcome outcome = runner.run();
    return conclude(options, outcome);
}

}  // namespace mireth::phone
