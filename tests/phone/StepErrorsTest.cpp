// Every kind of unusable step, touch and reaction, by name: the complaint says where and why.
#include "BadScenario.hpp"

namespace mireth::phone {
namespace {

class StepErrors : public ::testing::TestWithParam<BadScenario> {};

TEST_P(StepErrors, NamesThePlaceAndTheReasonOnOneLine) {
    expectComplaint(GetParam());
}

const BadScenario steps[] = {
    {"NoTime", withSteps(R"({"wait":true})"), "$.steps[0]: lacks the key \"at\""},
    {"NegativeTime", withSteps(R"({"at":-1,"wait":true})"), "$.steps[0].at: must be a number from 0"},
    {"TimeAsText", withSteps(R"({"at":"0","wait":true})"),
     "$.steps[0].at: must be a number from 0 to 86400, not \"0\""},
    {"NoAction", withSteps(R"({"at":0})"), "$.steps[0]: does nothing"},
    {"TwoActions", withSteps(R"({"at":0,"wait":true,"call":"reset"})"), "has two actions"},
    {"UnknownCall", withSteps(R"({"at":0,"call":"play"})"), "$.steps[0].call: must be one of"},
    {"UnknownScreen", withSteps(R"({"at":0,"present":"Ghost"})"),
     "$.steps[0].present: names no screen of this scenario: \"Ghost\""},
    {"UnknownView", withSteps(R"({"at":0,"set":"ghost"})"),
     "$.steps[0].set: names no view of this scenario: \"ghost\""},
    {"SetClass", withSteps(R"({"at":0,"set":"box","class":"Label"})"), "has an unknown key \"class\""},
    {"SetSubviews", withSteps(R"({"at":0,"set":"box","subviews":[]})"), "has an unknown key \"subviews\""},
    {"SetText", withSteps(R"({"at":0,"set":"box","text":"a"})"), "$.steps[0]: the key \"text\" belongs"},
    {"Wait", withSteps(R"({"at":0,"wait":false})"), "$.steps[0].wait: must be true, not false"},
    {"Background", withSteps(R"({"at":0,"moveToBackground":1})"), "must be true or false"},
    {"Signal", withSteps(R"({"at":0,"signal":{"type":"tap","target":[0,0]}})"),
     "signal.type: must be one of"},
    {"SignalTarget", withSteps(R"({"at":0,"signal":{"type":"rageTap","target":[0]}})"),
     "must have 2 elements"},
    {"Resize", withSteps(R"({"at":0,"resize":[0,9]})"), "$.steps[0].resize[0]: must be a number from 1"},
    {"ChangeType", withSteps(R"({"at":0,"reportScreenChange":{"screenHierarchy":[],"changeType":"go"}})"),
     "changeType: must be one of"},
    {"ExpectUnknown", withSteps(R"({"at":0,"call":"stopRecording","expect":"samplingRejected"})"),
     "$.steps[0].expect: must be one of"},
    {"ExpectOfReset", withSteps(R"({"at":0,"call":"reset","expect":"success"})"), "answers nothing"},
    {"ExpectOfWait", withSteps(R"({"at":0,"wait":true,"expect":"success"})"), "answers nothing"},
    {"WindowOfInitialize", withSteps(R"({"at":0,"initialize":{"brandId":"a","projectId":"b","window":1}})"),
     "initialize.window: must be true or false"},
};
INSTANTIATE_TEST_SUITE_P(Steps, StepErrors, ::testing::ValuesIn(steps), nameOf);

const BadScenario touches[] = {
    {"TapWithoutAPlace", withSteps(R"({"at":0,"tap":[1]})"), "$.steps[0].tap: must have 2 elements"},
    {"TapAsText", withSteps(R"({"at":0,"tap":["1",2]})"), "$.steps[0].tap[0]: must be a number"},
    {"TapNever", withSteps(R"({"at":0,"tap":[1,2],"times":0})"), "$.steps[0].times: must be a whole number"},
    {"TapHalf", withSteps(R"({"at":0,"tap":[1,2],"times":1.5})"), "$.steps[0].times: must be a whole number"},
    {"TapForEver", withSteps(R"({"at":0,"tap":[1,2],"times":1001})"), "from 1 to 1000"},
    {"TapsAllAtOnce", withSteps(R"({"at":0,"tap":[1,2],"times":2,"interval":0})"),
     "$.steps[0].interval: must be a number from 0.01"},
    {"TapKey", withSteps(R"({"at":0,"tap":[1,2],"count":2})"), "$.steps[0]: has an unknown key \"count\""},
    {"TimesOfASwipe", withSteps(R"({"at":0,"swipe":{"from":[1,2],"to":[3,4]},"times":2})"),
     "$.steps[0]: has an unknown key \"times\""},
    {"SwipeWithoutAnEnd", withSteps(R"({"at":0,"swipe":{"from":[1,2]}})"),
     "$.steps[0].swipe: lacks the key \"to\""},
    {"SwipeKey", withSteps(R"({"at":0,"swipe":{"from":[1,2],"to":[3,4],"moves":5}})"),
     "$.steps[0].swipe: has an unknown key \"moves\""},
    {"SwipeInNoTime", withSteps(R"({"at":0,"swipe":{"from":[1,2],"to":[3,4],"seconds":0}})"),
     "$.steps[0].swipe.seconds: must be a number from 0.01"},
    {"CancelledNowhere", withSteps(R"({"at":0,"cancelledTouch":true})"),
     "$.steps[0].cancelledTouch: must be a list"},
    {"ExpectOfTap", withSteps(R"({"at":0,"tap":[1,2],"expect":"success"})"), "answers nothing"},
};
INSTANTIATE_TEST_SUITE_P(Touches, StepErrors, ::testing::ValuesIn(touches), nameOf);

/// A view that reacts so.
std::string reactingWith(const std::string& reactions) {
    return withViews(R"({"id":"box","frame":[0,0,1,1],"onTap":)" + reactions + "}");
}

const BadScenario reactions[] = {
    {"NoList", reactingWith(R"({"logError":null})"), "$.screens[0].views[0].onTap: must be a list"},
    {"NoObject", reactingWith(R"(["present"])"), "$.screens[0].views[0].onTap[0]: must be an object"},
    {"Nothing", reactingWith("[{}]"), "$.screens[0].views[0].onTap[0]: does nothing; it needs an action"},
    {"TwoActions", reactingWith(R"([{"logError":null,"call":"reset"}])"),
     "onTap[0]: has two actions, \"call\" and \"logError\""},
    {"NotAnAppsAction", reactingWith(R"([{"wait":true}])"),
     "onTap[0]: has the action \"wait\", which an app cannot take"},
    {"TapsItself", reactingWith(R"([{"tap":[1,1]}])"), "has the action \"tap\", which an app cannot take"},
    {"At", reactingWith(R"([{"at":1,"call":"reset"}])"), "onTap[0]: has an unknown key \"at\""},
    {"Expect", reactingWith(R"([{"call":"stopRecording","expect":"success"}])"),
     "onTap[0]: has an unknown key \"expect\""},
    {"NegativeAfter", reactingWith(R"([{"logError":null,"after":-1}])"),
     "onTap[0].after: must be a number from 0"},
    {"UnknownCall", reactingWith(R"([{"call":"play"}])"), "onTap[0].call: must be one of"},
    {"UnknownScreen", reactingWith(R"([{"logError":null},{"present":"Ghost"}])"),
     "$.screens[0].views[0].onTap[1].present: names no screen"},
    {"UnknownView", reactingWith(R"([{"set":"ghost","hidden":true}])"),
     "$.screens[0].views[0].onTap[0].set: names no view"},
    {"UnknownViewFarDown",
     withViews(R"({"frame":[0,0,9,9],"subviews":[{"frame":[0,0,9,9],"onTap":[{"set":"x"}]}]})"),
     "$.screens[0].views[0].subviews[0].onTap[0].set: names no view"},
    {"UnsuitableSetting", reactingWith(R"([{"set":"box","text":"a"}])"),
     "$.screens[0].views[0].onTap[0]: the key \"text\" belongs"},
    {"SetOnTap", reactingWith(R"([{"set":"box","onTap":[]}])"), "onTap[0]: has an unknown key \"onTap\""},
};
INSTANTIATE_TEST_SUITE_P(Reactions, StepErrors, ::testing::ValuesIn(reactions), nameOf);

}  // namespace
}  // namespace mireth::phone
