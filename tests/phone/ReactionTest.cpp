// What the app does in answer to touches.
#include <gmock/gmock.h>

#include "TouchHost.hpp"

namespace mireth::phone {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using ReactionTest = TouchHost;

/// Reacts with an error that says `name`.
std::string box(const std::string& name, const std::string& frame, const std::string& more = "") {
    return R"({"id":")" + name + R"(","frame":)" + frame + R"(,"onTap":[{"logError":")" + name + R"("}])" +
           more + "}";
}

TEST_F(ReactionTest, RecognisersSeeTheEndBeforeTheAppReacts) {
    EXPECT_THAT(play(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[5,6]})"),
                ElementsAre("1000 ms #1 began at 5, 6, tap 1", "1080 ms #1 ended at 5, 6, tap 1", "error a"));
}

TEST_F(ReactionTest, ReactionsComeInOrder) {
    EXPECT_THAT(reactions(R"({"frame":[0,0,90,90],"onTap":[{"logError":null},{"reportScreenAppeared":"X"},
                    {"reportScreenDisappeared":"X"},{"call":"pauseRecording"}]})",
                          R"({"at":1,"tap":[5,6]})"),
                ElementsAre("error nil", "appeared X", "disappeared X", "pause",
                            "1080 ms pauseRecording = notStarted"));
}

TEST_F(ReactionTest, AReactionCanBeDelayed) {
    EXPECT_THAT(play(R"({"frame":[0,0,90,90],"onTap":[{"logError":"late","after":0.5},
                    {"logError":"soon","after":0.12},{"logError":"now"},{"logError":"at once","after":0}]})",
                     R"({"at":1,"tap":[5,6]},{"at":1.2,"logError":"step"},{"at":1.4,"logError":"other"})"),
                ElementsAre("1000 ms #1 began at 5, 6, tap 1", "1080 ms #1 ended at 5, 6, tap 1", "error now",
                            "error at once", "error soon", "error step", "error other", "error late"));
}

TEST_F(ReactionTest, TheDeepestViewAtThePointReacts) {
    EXPECT_THAT(
        reactions(box("outer", "[0,0,90,90]", R"(,"subviews":[)" + box("inner", "[10,10,20,20]") + "]"),
                  R"({"at":1,"tap":[5,5]},{"at":2,"tap":[15,15]})"),
        ElementsAre("error outer", "error inner"));
}

TEST_F(ReactionTest, TheNearestAncestorReactsForAViewThatDoesNot) {
    EXPECT_THAT(
        reactions(
            box("outer", "[0,0,90,90]",
                R"(,"subviews":[{"frame":[0,0,90,90],"subviews":[{"frame":[0,0,90,90]}]}])") +
                R"(,{"class":"Button","frame":[100,0,90,90],"text":"B","onTap":[{"logError":"button"}]})",
            R"({"at":1,"tap":[5,5]},{"at":2,"tap":[145,45]})"),
        ElementsAre("error outer", "error button"));
}

TEST_F(ReactionTest, TheFrontOneOfTwoViewsReacts) {
    EXPECT_THAT(reactions(box("back", "[0,0,90,90]") + "," + box("front", "[40,0,90,90]"),
                          R"({"at":1,"tap":[5,5]},{"at":2,"tap":[45,5]})"),
                ElementsAre("error back", "error front"));
}

TEST_F(ReactionTest, AnEmptyListTakesTheTapAndDoesNothing) {
    EXPECT_THAT(reactions(box("outer", "[0,0,90,90]", R"(,"subviews":[{"frame":[0,0,9,9],"onTap":[]}])"),
                          R"({"at":1,"tap":[5,5]})"),
                IsEmpty());
}

TEST_F(ReactionTest, ATapBesideEveryViewReachesTheRecognisersOnly) {
    EXPECT_THAT(play(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[500,900]})"),
                ElementsAre("1000 ms #1 began at 500, 900, tap 1", "1080 ms #1 ended at 500, 900, tap 1"));
}

TEST_F(ReactionTest, EveryTapOfARunIsReactedTo) {
    EXPECT_THAT(reactions(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[5,5],"times":3})"),
                ElementsAre("error a", "error a", "error a"));
}

TEST_F(ReactionTest, NothingReactsToASwipeOrACancelledTouch) {
    EXPECT_THAT(reactions(box("a", "[0,0,390,844]"),
                          R"({"at":1,"swipe":{"from":[9,9],"to":[9,99]}},{"at":2,"cancelledTouch":[5,5]})"),
                IsEmpty());
}

TEST_F(ReactionTest, AViewThatIsHiddenMeanwhileDoesNotReact) {
    EXPECT_THAT(
        reactions(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[5,5]},{"at":1.05,"set":"a","hidden":true})"),
        IsEmpty());
}

TEST_F(ReactionTest, AViewThatIsCoveredMeanwhileDoesNotReactNorDoesTheCover) {
    EXPECT_THAT(reactions(box("a", "[0,0,90,90]") + "," + box("cover", "[0,0,390,844]", R"(,"hidden":true)"),
                          R"({"at":1,"tap":[5,5]},{"at":1.05,"set":"cover","hidden":false})"),
                IsEmpty());
}

TEST_F(ReactionTest, AViewThatMovesUnderTheFingerStillReacts) {
    EXPECT_THAT(reactions(box("a", "[0,0,90,90]"),
                          R"({"at":1,"tap":[5,5]},{"at":1.05,"set":"a","frame":[2,2,90,90]})"),
                ElementsAre("error a"));
}

TEST_F(ReactionTest, AScreenPresentedMeanwhileTakesTheReactionAwayButNotTheTouch) {
    EXPECT_THAT(play(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[5,5]},{"at":1.05,"present":"B"})"),
                ElementsAre("1000 ms #1 began at 5, 5, tap 1", "1080 ms #1 ended at 5, 5, tap 1"));
}

TEST_F(ReactionTest, AWindowResizedMeanwhileLeavesTheTouchWhereItIs) {
    EXPECT_THAT(play(box("a", "[0,0,90,90]"), R"({"at":1,"tap":[5,6]},{"at":1.05,"resize":[844,390]})"),
                ElementsAre("1000 ms #1 began at 5, 6, tap 1", "1080 ms #1 ended at 5, 6, tap 1", "error a"));
}

TEST_F(ReactionTest, AReactionMaySetAViewAndPresentAScreen) {
    EXPECT_THAT(reactions(box("a", "[0,0,90,90]") + R"(,{"frame":[100,0,90,90],"onTap":[
                        {"set":"a","hidden":true},{"present":"B"},{"present":"A","after":1}]})",
                          R"({"at":1,"tap":[5,5]},{"at":2,"tap":[105,5]},{"at":3,"tap":[105,5]},
                             {"at":4,"tap":[5,5]})"),
                ElementsAre("error a"));
}

TEST_F(ReactionTest, TheEndOfATouchComesBeforeTheStepsOfItsInstant) {
    EXPECT_THAT(play(box("a", "[0,0,90,90]"), R"({"at":1.08,"logError":"step"},{"at":1,"tap":[5,6]})"),
                ElementsAre("1000 ms #1 began at 5, 6, tap 1", "1080 ms #1 ended at 5, 6, tap 1", "error a",
                            "error step"));
}

TEST_F(ReactionTest, TheScriptLastsUntilItsTouchesHaveEndedAndTheAppHasReacted) {
    play(R"({"frame":[0,0,90,90],"onTap":[{"logError":"late","after":100}]})",
         R"({"at":1,"tap":[5,5],"times":2,"interval":50})");
    EXPECT_EQ(log.back(), "151080 ms end started active");
}

TEST_F(ReactionTest, ACallThatALateReactionMakesIsWaitedFor) {
    library.startDelay = platform::Seconds(30);
    play(R"({"frame":[0,0,90,90],"onTap":[{"call":"startRecording","after":100}]})",
         R"({"at":1,"tap":[5,5]})");
    EXPECT_EQ(log.back(), "131080 ms end started active");
}

}  // namespace
}  // namespace mireth::phone
