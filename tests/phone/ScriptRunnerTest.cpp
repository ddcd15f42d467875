// When steps run, what they call, and how a script ends, with a library of the test's own.
#include "phone/ScriptRunner.hpp"

#include <gmock/gmock.h>

#include "ScriptHost.hpp"

namespace mireth::phone {
namespace {

using ::testing::ElementsAre;

class ScriptRunnerTest : public ScriptHost {
  protected:
    ScriptOutcome run(const std::string& steps) {
        return runFile(
            R"({"screens":[{"name":"A","views":[{"id":"v","frame":[0,0,1,1]}]},{"name":"B"}],"steps":[)" +
            steps + "]}");
    }
};

TEST_F(ScriptRunnerTest, InitialisesBeforeTheFirstStepWhenNoStepDoes) {
    run(R"({"at":0,"call":"pauseRecording"})");
    EXPECT_THAT(log, ElementsAre("initialize brand/project", "0 ms initializeProject = success", "pause",
                                 "0 ms pauseRecording = notStarted", "0 ms end started active"));
}

TEST_F(ScriptRunnerTest, AnInitialiseStepIsTheOnlyOne) {
    run(R"({"at":1,"initialize":{"brandId":"b","projectId":"p","window":false}})");
    EXPECT_THAT(log, ElementsAre("initialize b/p without window", "1000 ms initializeProject = success",
                                 "1000 ms end started active"));
    EXPECT_NE(phone.application().keyWindow(), nullptr);
}

TEST_F(ScriptRunnerTest, StepsRunInTheOrderOfTheirTimesAndThenOfTheFile) {
    run(R"({"at":2,"logError":"late"},{"at":1,"logError":"one"},{"at":1,"logError":null})");
    EXPECT_THAT(log, ElementsAre("initialize brand/project", "0 ms initializeProject = success", "error one",
                                 "error nil", "error late", "2000 ms end started active"));
}

TEST_F(ScriptRunnerTest, StepsOfOneInstantComeBeforeTheAnswersToTheirCalls) {
    run(R"({"at":0,"call":"startRecording"},{"at":0,"call":"pauseRecording"},{"at":0.1,"call":"stopRecording"})");
    EXPECT_THAT(log, ElementsAre("initialize brand/project", "0 ms initializeProject = success", "start",
                                 "pause", "0 ms pauseRecording = notStarted", "0 ms startRecording = success",
                                 "stop", "100 ms stopRecording = success", "100 ms end started active"));
}

TEST_F(ScriptRunnerTest, EveryOtherStepReachesItsTarget) {
    run(R"({"at":0,"reportScreenAppeared":"X"},{"at":0,"reportScreenDisappeared":"X"},
           {"at":0,"reportScreenChange":{"screenHierarchy":[{"screenName":"X"}],"changeType":"appear"}},
           {"at":0,"signal":{"type":"rageTap","target":[1,2]}},{"at":0,"call":"reset"},
           {"at":0,"network":"none"},{"at":0,"systemClock":3600},{"at":0,"present":"B"},
           {"at":0,"set":"v","hidden":true},{"at":0,"resize":[100,200]},{"at":1,"wait":true})");
    EXPECT_THAT(log,
                ElementsAre("initialize brand/project", "0 ms initializeProject = success", "appeared X",
                            "disappeared X", "change of 1", "signal", "reset", "1000 ms end started active"));
    EXPECT_FALSE(phone.network().path().satisfied);
    EXPECT_EQ(phone.clock().now().toTimestampMillis(), 1'700'003'601'000);
}

TEST_F(ScriptRunnerTest, MovingToTheBackgroundIsToldToTheObservers) {
    int heard = 0;
    const auto token = phone.application().observeDidEnterBackground([&] { ++heard; });
    run(R"({"at":0,"moveToBackground":true})");
    EXPECT_EQ(heard, 1);
}

TEST_F(ScriptRunnerTest, AnUnexpectedAnswerIsASurpriseThatNamesTheStep) {
    const auto outcome =
        run(R"({"at":0,"call":"pauseRecording","expect":"success"},{"at":1,"logError":"goes on"})");
    EXPECT_THAT(outcome.surprises,
                ElementsAre("$.steps[0]: pauseRecording answered notStarted, not success"));
    EXPECT_EQ(log.back(), "1000 ms end started active");
}

TEST_F(ScriptRunnerTest, TheEndWaitsForWhatTheLastStepSetOff) {
    library.startDelay = platform::Seconds(3);
    run(R"({"at":1,"call":"startRecording"})");
    EXPECT_EQ(log.back(), "4000 ms end started active");
}

TEST_F(ScriptRunnerTest, ACallThatNeverAnswersIsASurprise) {
    library.answers = false;
    const auto outcome = run(R"({"at":0,"call":"startRecording"})");
    EXPECT_THAT(outcome.surprises, ElementsAre("a call of the library never answered"));
}

TEST_F(ScriptRunnerTest, ARepeatingTimerOfTheLibraryDoesNotKeepTheScriptAlive) {
    const auto timer = phone.queue().scheduleRepeating(platform::Seconds(0.5), [] {});
    run(R"({"at":2,"wait":true})");
    EXPECT_EQ(log.back(), "2000 ms end started active");
}

TEST_F(ScriptRunnerTest, AnEmptyScriptEndsAtOnce) {
    run("");
    EXPECT_EQ(log.back(), "0 ms end started active");
}

}  // namespace
}  // namespace mireth::phone
