#include "endtoend/support/EndToEnd.hpp"

#include <stdlib.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace mireth::endtoend {

namespace {

/// The files below examples/scenarios whose names end so, relative and without that end, sorted.
std::vector<std::string> exampleFiles(const std::string& end) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(MIRETH_EXAMPLE_SCENARIOS)) {
        const std::string name = entry.path().lexically_relative(MIRETH_EXAMPLE_SCENARIOS).native();
        if (name.ends_with(end)) {
            names.push_back(name.substr(0, name.size() - end.size()));
        }
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace

EndToEnd::EndToEnd() {
    // Log hosts below 127.0.0.1 have no address; where no name server says so, waiting for it is to be short.
    ::setenv("RES_OPTIONS", "timeout:1 attempts:1", 1);
}

std::unique_ptr<Receiver> EndToEnd::startReceiver(const Json& configuration, std::vector<std::string> more) {
    const std::string number = std::to_string(receivers_++);
    if (!configuration.is_null()) {
        const std::string file = path("receiver" + number + ".json");
        test::writeFile(file, configuration.dump());
        more.insert(more.end(), {"--config", file});
    }
    return std::make_unique<Receiver>(path("data" + number), std::move(more));
}

PhoneRun EndToEnd::playFile(const std::string& scenario, const std::string& origin,
                            PhoneSettings settings) const {
    std::vector<std::string> arguments{"--sr-endpoint", origin,       "--kelda-endpoint", origin,
                                       "--caches",      caches(),     "--speed",          settings.speed,
                                       "--seed",        settings.seed};
    arguments.insert(arguments.end(), settings.more.begin(), settings.more.end());
    arguments.push_back(scenario);
    return runPhone(std::move(arguments));
}

PhoneRun EndToEnd::play(const Json& scenario, const std::string& origin, PhoneSettings settings) {
    const std::string file = path("scenario" + std::to_string(scenarios_++) + ".json");
    test::writeFile(file, scenario.dump());
    return playFile(file, origin, std::move(settings));
}

std::vector<std::string> exampleNames() {
    auto names = exampleFiles(".json");
    std::erase_if(names, [](const std::string& name) { return name.ends_with(".timeline"); });
    return names;
}

std::vector<std::string> exampleTimelineNames() {
    return exampleFiles(".timeline.json");
}

std::string asTestName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::ranges::replace_if(name, [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}

std::string exampleScenario(const std::string& name) {
    return MIRETH_EXAMPLE_SCENARIOS "/" + name + ".json";
}

Json exampleTimeline(const std::string& name) {
    return readJson(MIRETH_EXAMPLE_SCENARIOS "/" + name + ".timeline.json");
}

Json testScenario(const std::string& name) {
    return readJson(MIRETH_TEST_SCENARIOS "/" + name + ".json");
}

Json scenarioOf(Json steps) {
    return {{"project", {{"brandId", "b1"}, {"projectId", "p1"}}},
            {"screens", {{{"name", "HomeViewController"}, {"background", "#c8c8c8"}}}},
            {"steps", std::move(steps)}};
}

Json recordingFor(double seconds) {
    return scenarioOf(
        {{{"at", 0}, {"call", "startRecording"}}, {{"at", seconds}, {"call", "stopRecording"}}});
}

Json readJson(const std::string& file) {
    return Json::parse(readFile(file));
}

std::string readFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error(file + ": cannot be read");
    }
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> typesOf(const Json& timeline) {
    std::vector<std::string> types;
    for (const auto& event : timeline) {
        types.push_back(event.at("type"));
    }
    return types;
}

}  // namespace mireth::endtoend
