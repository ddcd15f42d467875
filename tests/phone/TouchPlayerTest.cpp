// What touches a script plays.
#include "phone/TouchPlayer.hpp"

#include <gmock/gmock.h>

#include "TouchHost.hpp"

namespace mireth::phone {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

using TouchPlayerTest = TouchHost;

TEST_F(TouchPlayerTest, ATapLasts80Milliseconds) {
    EXPECT_THAT(play("", R"({"at":1,"tap":[50,60]})"),
                ElementsAre("1000 ms #1 began at 50, 60, tap 1", "1080 ms #1 ended at 50, 60, tap 1"));
}

TEST_F(TouchPlayerTest, ARunOfTapsBeginsAtEqualIntervals) {
    EXPECT_THAT(play("", R"({"at":1,"tap":[5,6],"times":3})"),
                ElementsAre("1000 ms #1 began at 5, 6, tap 1", "1080 ms #1 ended at 5, 6, tap 1",
                            "1150 ms #2 began at 5, 6, tap 2", "1230 ms #2 ended at 5, 6, tap 2",
                            "1300 ms #3 began at 5, 6, tap 3", "1380 ms #3 ended at 5, 6, tap 3"));
}

TEST_F(TouchPlayerTest, ATapCountsOnLessThan350MillisecondsAfterTheLastOneEnded) {
    EXPECT_THAT(counts(R"({"at":1,"tap":[5,6],"times":3,"interval":0.429})"), ElementsAre("1", "2", "3"));
}

TEST_F(TouchPlayerTest, ATapAfter350MillisecondsBeginsANewRun) {
    EXPECT_THAT(counts(R"({"at":1,"tap":[5,6],"times":3,"interval":0.43})"), ElementsAre("1", "1", "1"));
}

TEST_F(TouchPlayerTest, ATapBeginsAfterTheOneThatEndsAtItsInstant) {
    EXPECT_THAT(counts(R"({"at":1,"tap":[5,6],"times":4,"interval":0.08})"), ElementsAre("1", "2", "3", "4"));
}

TEST_F(TouchPlayerTest, ATapCountsOnWithin40Points) {
    EXPECT_THAT(counts(R"({"at":1,"tap":[50,50]},{"at":1.2,"tap":[90,50]},{"at":1.4,"tap":[114,82]})"),
                ElementsAre("1", "2", "3"));
}

TEST_F(TouchPlayerTest, ATapFartherThan40PointsBeginsANewRun) {
    EXPECT_THAT(counts(R"({"at":1,"tap":[50,50]},{"at":1.2,"tap":[90.1,50]},{"at":1.4,"tap":[115,82]})"),
                ElementsAre("1", "1", "1"));
}

TEST_F(TouchPlayerTest, ASwipeCountsInARunWhereItEndsAndACancelledTouchDoesNot) {
    EXPECT_THAT(counts(R"({"at":1,"swipe":{"from":[5,6],"to":[300,6],"seconds":0.1}},{"at":1.2,"tap":[5,6]},
                          {"at":2,"swipe":{"from":[5,6],"to":[300,6],"seconds":0.1}},{"at":2.2,"tap":[300,6]},
                          {"at":3,"cancelledTouch":[5,6]},{"at":3.2,"tap":[5,6]})"),
                ElementsAre("1", "1", "1", "2", "1"));
}

TEST_F(TouchPlayerTest, TouchesMayOverlap) {
    EXPECT_THAT(play("", R"({"at":1,"tap":[50,60]},{"at":1,"tap":[250,60]},{"at":1.05,"tap":[50,60]})"),
                ElementsAre("1000 ms #1 began at 50, 60, tap 1", "1000 ms #2 began at 250, 60, tap 1",
                            "1050 ms #3 began at 50, 60, tap 1", "1080 ms #1 ended at 50, 60, tap 1",
                            "1080 ms #2 ended at 250, 60, tap 1", "1130 ms #3 ended at 50, 60, tap 1"));
}

TEST_F(TouchPlayerTest, ASwipeMovesFiveTimesOnItsWay) {
    EXPECT_THAT(play("", R"({"at":1,"swipe":{"from":[60,600],"to":[0,0],"seconds":0.6}})"),
                ElementsAre("1000 ms #1 began at 60, 600, tap 1", "1100 ms #1 moved at 50, 500, tap 1",
                            "1200 ms #1 moved at 40, 400, tap 1", "1300 ms #1 moved at 30, 300, tap 1",
                            "1400 ms #1 moved at 20, 200, tap 1", "1500 ms #1 moved at 10, 100, tap 1",
                            "1600 ms #1 ended at 0, 0, tap 1"));
}

TEST_F(TouchPlayerTest, ASwipeTakes300MillisecondsUnlessItSaysOtherwise) {
    EXPECT_THAT(play("", R"({"at":1,"swipe":{"from":[0,0],"to":[0,0]}})"),
                Contains("1300 ms #1 ended at 0, 0, tap 1"));
}

TEST_F(TouchPlayerTest, ACancelledTouchIsCancelledWhenATapWouldEnd) {
    EXPECT_THAT(play("", R"({"at":1,"cancelledTouch":[50,60]})"),
                ElementsAre("1000 ms #1 began at 50, 60, tap 1", "1080 ms #1 cancelled at 50, 60, tap 1"));
}

}  // namespace
}  // namespace mireth::phone
