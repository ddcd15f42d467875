// How a scenario gets smaller.
#include "model/Shrinker.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace mireth::model {

namespace {

Json parse(const char* text) {
    return Json::parse(text);
}

bool hasStep(const Json& scenario, const std::string& key) {
    return std::ranges::any_of(scenario.at("steps"), [&key](const Json& step) { return step.contains(key); });
}

TEST(Shrinker, KeepsTheStepsThatMatterAndTheirOrder) {
    const Json scenario = parse(R"({"screens": [], "steps": [{"at": 0, "wait": 1}, {"at": 0, "tap": 2},
        {"at": 0, "wait": 3}, {"at": 0, "swipe": 4}, {"at": 0, "wait": 5}]})");
    const auto both = [](const Json& candidate) {
        return hasStep(candidate, "tap") && hasStep(candidate, "swipe");
    };
    EXPECT_EQ(shrink(scenario, both),
              parse(R"({"screens": [], "steps": [{"at": 0, "tap": 2}, {"at": 0, "swipe": 4}]})"));
}

TEST(Shrinker, LeavesOutStepsThatGoTogether) {
    const Json scenario = parse(R"({"screens": [], "steps": [{"at": 0, "systemClock": 1}, {"at": 0, "tap": 2},
        {"at": 0, "systemClock": -1}]})");
    const auto balanced = [](const Json& candidate) {
        int clock = 0;
        for (const auto& step : candidate.at("steps")) {
            clock += step.value("systemClock", 0);
        }
        return clock == 0 && hasStep(candidate, "tap");
    };
    EXPECT_EQ(shrink(scenario, balanced), parse(R"({"screens": [], "steps": [{"at": 0, "tap": 2}]})"));
}

TEST(Shrinker, LeavesOutWhatHasADefaultOrIsNested) {
    const Json scenario = parse(R"({"name": "seed 1", "device": {"memoryMiB": 1024}, "screens": [{"name": "A",
        "background": "#ffffff", "views": [{"id": "v", "frame": [0, 0, 1, 1],
        "onTap": [{"logError": null}, {"present": "A"}]}]}], "steps": []})");
    const auto presents = [](const Json& candidate) { return candidate.dump().contains("present"); };
    EXPECT_EQ(
        shrink(scenario, presents),
        parse(R"({"name": "seed 1", "screens": [{"name": "A", "views": [{"id": "v", "frame": [0, 0, 1, 1],
                  "onTap": [{"present": "A"}]}]}], "steps": []})"));
}

TEST(Shrinker, ShortensRunsAndPauses) {
    const Json scenario = parse(R"({"screens": [], "steps": [{"at": 2.5, "wait": true},
        {"at": 14.125, "tap": [1, 1], "times": 6}]})");
    const auto longRunLater = [](const Json& candidate) {
        const auto& steps = candidate.at("steps");
        return steps.size() == 2 && steps[1].contains("tap") && steps[1].value("times", 1) >= 4 &&
               steps[1].at("at").get<double>() - steps[0].at("at").get<double>() > 0.5;
    };
    EXPECT_EQ(shrink(scenario, longRunLater), parse(R"({"screens": [], "steps": [{"at": 0.0},
                  {"at": 0.501, "tap": [1, 1], "times": 4}]})"))
        << "gaps close by whole milliseconds at least";
}

TEST(Shrinker, LeavesTheSmallestAsItIs) {
    const Json scenario = parse(R"({"screens": [], "steps": [{"at": 0, "tap": 2}]})");
    int asked = 0;
    const auto never = [&asked](const Json&) {
        ++asked;
        return false;
    };
    EXPECT_EQ(shrink(scenario, never), scenario);
    EXPECT_GT(asked, 0);
}

}  // namespace

}  // namespace mireth::model
