#include "model/ModelCheck.hpp"

#include <fstream>
#include <utility>

#include "model/LibraryRun.hpp"
#include "model/Model.hpp"
#include "model/ScenarioGenerator.hpp"
#include "model/Shrinker.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::model {

namespace {

std::string fileNameOf(const Json& scenario) {
    std::string name = scenario.value("name", "scenario");
    for (char& character : name) {
        character = character == ' ' || character == '/' ? '-' : character;
    }
    return "model-" + name + ".json";
}

/// The same keys in the same order, but a step, a screen and a view to a line.
std::string laidOut(const Json& scenario) {
    std::string text = "{\n";
    const char* comma = "";
    for (const auto& [key, value] : scenario.items()) {
        text += std::exchange(comma, ",\n") + ("  " + Json(key).dump()) + ": ";
        if (key != "steps" && key != "screens") {
            text += value.dump();
            continue;
        }
        const char* gap = "[\n    ";
        for (const auto& element : value) {
            text += std::exchange(gap, ",\n    ") + element.dump();
        }
        text += value.empty() ? "[]" : "\n  ]";
    }
    return text + "\n}\n";
}

}  // namespace

std::optional<Difference> compare(const Json& scenario, const std::filesystem::path& folder,
                                  const Rules& rules) {
    const auto read = phone::parseScenario(scenario.dump(), folder);
    if (const auto reason = reasonToPass(read)) {
        throw phone::ScenarioError("", "the model does not go so far: " + *reason);
    }
    Difference difference{scenario, foretell(read, rules), playInProcess(read)};
    return difference.expected == difference.actual ? std::nullopt : std::optional(std::move(difference));
}

std::optional<Difference> findDifference(std::uint64_t first, std::uint64_t count, const Rules& rules) {
    const auto differs = [&rules](const Json& candidate) {
        try {
            return compare(candidate, "", rules).has_value();
        } catch (const phone::ScenarioError&) {
            return false;  // something was left out that another part needs
        }
    };
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const Json scenario = generateScenario(seed);
        if (compare(scenario, "", rules)) {
            return compare(shrink(scenario, differs), "", rules);
        }
    }
    return std::nullopt;
}

std::string report(const Difference& difference, const std::filesystem::path& folder) {
    const auto file = folder / fileNameOf(difference.scenario);
    const std::string text = laidOut(difference.scenario);
    std::ofstream(file) << text;
    return difference.scenario.value("name", "") + ": the library differs from the rules\n" + text +
           describeDifference(difference.expected, difference.actual) +
           "play it again: mireth-phone --speed max " + file.string() + "\n";
}

}  // namespace mireth::model
