// What random scenarios are worth: they are valid, the same on every run, and leave nothing out.
#include "model/ScenarioGenerator.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "model/Model.hpp"

namespace mireth::model {

namespace {

constexpr std::uint64_t count = 1000;

TEST(ScenarioGenerator, MakesTheSameOfOneSeedAndAnotherOfAnother) {
    EXPECT_EQ(generateScenario(7), generateScenario(7));
    EXPECT_NE(generateScenario(7), generateScenario(8));
    EXPECT_EQ(generateScenario(7).at("name"), "seed 7");
}

TEST(ScenarioGenerator, MakesScenariosThatTheModelKnows) {
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        const auto scenario = phone::parseScenario(generateScenario(seed).dump(), "");
        ASSERT_EQ(reasonToPass(scenario), std::nullopt) << seed;
    }
}

TEST(ScenarioGenerator, BringsAboutEveryEventAnswerAndRefusal) {
    std::vector<std::string> all;
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        auto outcome = foretell(phone::parseScenario(generateScenario(seed).dump(), ""));
        all.insert(all.end(), outcome.events.begin(), outcome.events.end());
        all.insert(all.end(), outcome.lines.begin(), outcome.lines.end());
    }
    const auto howMany = [&all](const std::string& text) {
        return std::ranges::count_if(all, [&text](const std::string& line) { return line.contains(text); });
    };
    // Often enough that a thousand scenarios see them in many situations.
    constexpr int often = 50;
    for (const char* text : {R"("interactionId":"Tap")",
                             R"("signalId":"DeadTap")",
                             R"("signalId":"RageTap")",
                             R"("signalId":"ErrorTap")",
                             R"("message":"")",
                             R"("message":"declined")",
                             R"("detectionType":"auto")",
                             R"("detectionType":"manual")",
                             R"("changeType":"appear")",
                             R"("changeType":"disappear")",
                             R"("depth":1)",
                             R"("chunkNumber":1)",
                             "S2 ",
                             "startRecording success",
                             "startRecording alreadyStarted",
                             "stopRecording success",
                             "stopRecording notStarted",
                             "pauseRecording success",
                             "pauseRecording alreadyPaused",
                             "pauseRecording notStarted",
                             "resumeRecording success",
                             "resumeRecording notPaused",
                             "resumeRecording notStarted",
                             "Could not record event - event callback is nil",
                             "Failed to record event",
                             "Can't record log error without starting the session first",
                             "Can't record screen disappearance without starting the session first"}) {
        EXPECT_GE(howMany(text), often) << text;
    }
    EXPECT_GE(howMany("Screen hierarchy cannot be empty"), 10);
}

}  // namespace

}  // namespace mireth::model
