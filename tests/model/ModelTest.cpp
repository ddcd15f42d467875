// The model itself: it foretells the timelines that stand beside the examples, which were written by hand.
#include "model/Model.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace mireth::model {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".timeline.json";

/// Such as "signals/rage-tap".
std::vector<std::string> examples() {
    std::vector<std::string> names;
    for (const std::string folder : {"signals", "screens"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(MIRETH_EXAMPLE_SCENARIOS) / folder)) {
            const std::string file = entry.path().filename();
            if (file.ends_with(ending)) {
                names.push_back(folder + "/" + file.substr(0, file.size() - ending.size()));
            }
        }
    }
    std::ranges::sort(names);
    return names;
}

class ModelOfExamples : public testing::TestWithParam<std::string> {};

TEST_P(ModelOfExamples, ForetellsTheTimelineBesideThem) {
    const std::string path = MIRETH_EXAMPLE_SCENARIOS "/" + GetParam();
    const auto scenario = phone::readScenario(path + ".json");
    ASSERT_EQ(reasonToPass(scenario), std::nullopt);
    std::vector<std::string> expected;
    for (const auto& event : Json::parse(std::ifstream(path + std::string(ending)))) {
        expected.push_back(eventLine("S1", event));
    }
    EXPECT_EQ(foretell(scenario).events, expected);
}

INSTANTIATE_TEST_SUITE_P(Files, ModelOfExamples, testing::ValuesIn(examples()), [](const auto& tested) {
    std::string name = tested.param;
    std::ranges::replace_if(
        name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
});

phone::Scenario scenarioOf(const std::string& steps, const std::string& views = "") {
    return phone::parseScenario(
        R"({"screens": [{"name": "Screen", "views": [)" + views + R"(]}], "steps": [)" + steps + "]}", "");
}

TEST(Model, PassesWhatItDoesNotKnow) {
    const std::string stop = R"({"at": 9, "call": "stopRecording"})";
    EXPECT_EQ(reasonToPass(scenarioOf("")), std::nullopt);
    EXPECT_EQ(reasonToPass(scenarioOf(stop)), std::nullopt);
    EXPECT_NE(reasonToPass(scenarioOf(R"({"at": 0, "wait": true})")), std::nullopt) << "no stop at the end";
    EXPECT_NE(reasonToPass(scenarioOf(R"({"at": 1, "resize": [100, 100]}, )" + stop)), std::nullopt);
    EXPECT_NE(reasonToPass(scenarioOf(R"({"at": 1, "call": "reset"}, )" + stop)), std::nullopt);
    EXPECT_NE(reasonToPass(scenarioOf(R"({"at": 9, "call": "startRecording"}, )" + stop)), std::nullopt)
        << "two in one turn";
    const std::string view = R"({"frame": [0, 0, 9, 9], "onTap": [{"call": "stopRecording"}, {)";
    EXPECT_NE(reasonToPass(scenarioOf(stop, view + R"("logError": null}]})")), std::nullopt);
    EXPECT_EQ(reasonToPass(scenarioOf(stop, view + R"("logError": null, "after": 1}]})")), std::nullopt);
    EXPECT_NE(reasonToPass(scenarioOf(stop, view + R"("call": "startRecording", "after": 1}]})")),
              std::nullopt);
}

}  // namespace

}  // namespace mireth::model
