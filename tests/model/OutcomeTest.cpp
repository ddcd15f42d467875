// How outcomes are written down, so that equal ones are equal texts.
#include "model/Outcome.hpp"

#include <gtest/gtest.h>

namespace mireth::model {

namespace {

TEST(Outcome, WritesEqualNumbersTheSameWay) {
    EXPECT_EQ(eventLine("S1", {{"x", 0.42F}, {"y", 1200.0}, {"timestamp", 1'700'000'000'123}}),
              eventLine("S1", {{"x", 0.42}, {"y", 1200}, {"timestamp", 1'700'000'000'123}}));
    EXPECT_NE(eventLine("S1", {{"x", 0.42}}), eventLine("S1", {{"x", 0.4200001}}));
}

TEST(Outcome, TellsOrderSessionAndKeysApart) {
    EXPECT_NE(eventLine("S1", {{"x", 1}, {"y", 2}}), eventLine("S1", {{"y", 2}, {"x", 1}}));
    EXPECT_NE(eventLine("S1", {{"x", 1}}), eventLine("S2", {{"x", 1}}));
}

TEST(Outcome, MarksTheLinesThatDiffer) {
    const Outcome expected{{"S1 {}"}, {answerLine(0, "stopRecording", "success"), errorLine(20, "no")}};
    const Outcome actual{{"S1 {}"}, {answerLine(0, "stopRecording", "success")}};
    EXPECT_EQ(
        describeDifference(expected, actual),
        "events by the rules:\n    S1 {}\nevents of the library:\n    S1 {}\n"
        "answers and error lines by the rules:\n    0 ms stopRecording success\n  ! 20 ms error \"no\"\n"
        "answers and error lines of the library:\n    0 ms stopRecording success\n");
}

}  // namespace

}  // namespace mireth::model
