#include "endtoend/support/EndToEnd.hpp"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace mireth::endtoend {

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

std::string exampleScenario(const std::string& name) {
    return MIRETH_EXAMPLE_SCENARIOS "/" + name + ".json";
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
