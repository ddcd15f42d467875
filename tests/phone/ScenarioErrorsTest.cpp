// Every kind of unusable scenario, by name: the complaint says where and why.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "phone/Scenario.hpp"
#include "phone/ScenarioError.hpp"
#include "phone/ScreenSet.hpp"

namespace mireth::phone {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct BadScenario {
    const char* name;
    std::string text;
    std::string complaint;
};

void PrintTo(const BadScenario& bad, std::ostream* out) {
    *out << bad.name;
}

std::string nameOf(const ::testing::TestParamInfo<BadScenario>& test) {
    return test.param.name;
}

/// A scenario with one screen of `views`.
std::string withViews(const std::string& views) {
    return R"({"screens":[{"name":"Home","views":[)" + views + R"(]}],"steps":[]})";
}

std::string withSteps(const std::string& steps) {
    return R"({"screens":[{"name":"Home","views":[{"id":"box","frame":[0,0,9,9]}]}],"steps":[)" + steps +
           "]}";
}

std::string with(const std::string& member) {
    return "{" + member + R"(,"screens":[{"name":"Home"}],"steps":[]})";
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t index = 0; index < times; ++index) {
        all += text;
    }
    return all;
}

class ScenarioErrors : public ::testing::TestWithParam<BadScenario> {};

TEST_P(ScenarioErrors, NamesThePlaceAndTheReasonOnOneLine) {
    try {
        const Scenario scenario = parseScenario(GetParam().text, "/nowhere");
        const ScreenSet screens(scenario);
        FAIL() << "was taken for a good scenario";
    } catch (const ScenarioError& error) {
        const std::string line = error.what();
        EXPECT_THAT(line, HasSubstr(GetParam().complaint));
        EXPECT_EQ(line.find('\n'), std::string::npos);
        EXPECT_LT(line.size(), 600U);
    }
}

const BadScenario files[] = {
    {"Empty", "", "is not JSON: parse error at line 1"},
    {"NotJson", "{\"screens\": nonsense}", "is not JSON"},
    {"TrailingText", "{} {}", "is not JSON"},
    {"NotANumber", with(R"("window":{"scale":NaN})"), "is not JSON"},
    {"InfiniteNumber", with(R"("window":{"scale":1e999})"), "is not JSON"},
    {"InvalidUtf8", with("\"name\":\"\xff\xfe\""), "is not JSON"},
    {"DepthBomb", repeated("[", 100'000), "is nested more than 128 deep"},
    {"DoubledKey", R"({"name":"a","name":"b","screens":[],"steps":[]})", "has the key \"name\" twice"},
    {"AnArray", "[]", "$: must be an object"},
    {"NoScreens", R"({"steps":[]})", "$: lacks the key \"screens\""},
    {"NoSteps", R"({"screens":[{"name":"Home"}]})", "$: lacks the key \"steps\""},
    {"EmptyScreens", R"({"screens":[],"steps":[]})", "$.screens: must have 1 to 1000 elements, and has 0"},
    {"UnknownTopKey", with(R"("colour":1)"), "$: has an unknown key \"colour\""},
    {"UnknownKeyWithNewline", with(R"("a\nb":1)"), R"($: has an unknown key "a\nb")"},
    {"NulInText", with(R"("name":"a\u0000b")"), "$.name: must not contain the character NUL"},
};
INSTANTIATE_TEST_SUITE_P(File, ScenarioErrors, ::testing::ValuesIn(files), nameOf);

const BadScenario settings[] = {
    {"ClockKey", with(R"("clock":{"epoch":1})"), "$.clock: has an unknown key \"epoch\""},
    {"FractionalEpoch", with(R"("clock":{"epochMillis":1.5})"),
     "$.clock.epochMillis: must be a whole number"},
    {"HugeEpoch", with(R"("clock":{"epochMillis":18446744073709551615})"), "must be a whole number"},
    {"NegativeUptime", with(R"("clock":{"uptimeSeconds":-1})"), "$.clock.uptimeSeconds: must be a number"},
    {"UnknownIdiom", with(R"("device":{"idiom":"watch"})"), R"(must be one of "phone", "pad")"},
    {"ZeroMemory", with(R"("device":{"memoryMiB":0})"), "$.device.memoryMiB: must be a whole number from 1"},
    {"ZeroWindow", with(R"("window":{"width":0,"height":10})"), "$.window.width: must be a number from 1"},
    {"HalfAWindow", with(R"("window":{"width":10})"), "$.window: lacks the key \"height\""},
    {"HugeScale", with(R"("window":{"scale":100})"), "$.window.scale: must be a number from 0.5 to 4"},
    {"BundleNumber", with(R"("bundle":{"VEX_VERSION":1})"), "$.bundle.VEX_VERSION: must be a text"},
    {"UnknownNetwork", with(R"("network":"5g")"), "$.network: must be one of"},
    {"ProjectNumber", with(R"("project":{"brandId":1})"), "$.project.brandId: must be a text"},
    {"MaskingText", with(R"("configuration":{"disableMasking":"no"})"), "must be true or false"},
    {"UnknownMaskedClass", with(R"("configuration":{"additionalViewTypesToMask":["Ghost"]})"),
     "$.configuration.additionalViewTypesToMask[0]: names no class of views"},
    {"ClassTwice", with(R"("viewClasses":[{"name":"A"},{"name":"A"}])"),
     "$.viewClasses[1].name: is the name of another class"},
    {"BuiltInClassAgain", with(R"("viewClasses":[{"name":"Label"}])"), "is the name of another class"},
    {"UnknownSuperclass", with(R"("viewClasses":[{"name":"A","superclass":"B"},{"name":"B"}])"),
     "$.viewClasses[0].superclass: names no class that is known here"},
};
INSTANTIATE_TEST_SUITE_P(Settings, ScenarioErrors, ::testing::ValuesIn(settings), nameOf);

const BadScenario views[] = {
    {"ScreenTwice", R"({"screens":[{"name":"A"},{"name":"A"}],"steps":[]})",
     "$.screens[1].name: is the name of another screen"},
    {"NoFrame", withViews("{}"), "$.screens[0].views[0]: lacks the key \"frame\""},
    {"ShortFrame", withViews(R"({"frame":[1,2,3]})"), "must have 4 elements, and has 3"},
    {"TextInFrame", withViews(R"({"frame":[1,2,3,"4"]})"),
     "$.screens[0].views[0].frame[3]: must be a number"},
    {"NegativeWidth", withViews(R"({"frame":[1,2,-3,4]})"), "must not have a negative width or height"},
    {"FarAway", withViews(R"({"frame":[1e9,2,3,4]})"), "must be a number from -100000.0 to 100000.0"},
    {"IdTwice", withViews(R"({"id":"a","frame":[0,0,1,1]},{"id":"a","frame":[0,0,1,1]})"),
     "$.screens[0].views[1].id: is used by another view"},
    {"EmptyId", withViews(R"({"id":"","frame":[0,0,1,1]})"), "must not be empty"},
    {"UnknownKey", withViews(R"({"frame":[0,0,1,1],"colour":"#fff"})"), "has an unknown key \"colour\""},
    {"UnknownClass", withViews(R"({"class":"Ghost","frame":[0,0,1,1]})"),
     "$.screens[0].views[0].class: names no class of views"},
    {"WindowClass", withViews(R"({"class":"Window","frame":[0,0,1,1]})"), "names no class of views"},
    {"ShortColor", withViews(R"({"frame":[0,0,1,1],"background":"#fff"})"), "must be a colour such as"},
    {"BadColor", withViews(R"({"frame":[0,0,1,1],"background":"#ggffff"})"), "must be a colour such as"},
    {"Opacity", withViews(R"({"frame":[0,0,1,1],"opacity":1.5})"), "must be a number from 0"},
    {"Hidden", withViews(R"({"frame":[0,0,1,1],"hidden":1})"), "must be true or false"},
    {"BorderKey", withViews(R"({"frame":[0,0,1,1],"border":{"colour":"#ffffff"}})"), "has an unknown key"},
    {"FontSize", withViews(R"({"class":"Label","frame":[0,0,1,1],"font":["Inter",0]})"),
     ".font[1]: must be a number from 1"},
    {"Alignment", withViews(R"({"class":"Label","frame":[0,0,1,1],"alignment":"top"})"), "must be one of"},
    {"EmptyAnimation", withViews(R"({"frame":[0,0,1,1],"animated":{}})"), "lacks the key \"frame\""},
    {"Controller", withViews(R"({"frame":[0,0,1,1],"controller":{}})"), "lacks the key \"name\""},
    {"TextOnAView", withViews(R"({"frame":[0,0,1,1],"text":"a"})"), "belongs to a view that shows text"},
    {"FontOnAnImage", withViews(R"({"class":"ImageView","frame":[0,0,1,1],"font":["Inter",9]})"),
     "belongs to a view that shows text"},
    {"ImageOnALabel", withViews(R"({"class":"Label","frame":[0,0,1,1],"image":"#ffffff"})"),
     "belongs to an image view"},
    {"ResponderOnALabel", withViews(R"({"class":"Label","frame":[0,0,1,1],"firstResponder":true})"),
     "belongs to a text field"},
    {"ColorOnAView", withViews(R"({"frame":[0,0,1,1],"color":"#ffffff"})"), "the key \"color\" belongs"},
    {"AbsolutePicture", withViews(R"({"class":"ImageView","frame":[0,0,1,1],"image":"/etc/passwd"})"),
     "must be a path relative to the scenario file"},
    {"MissingPicture", withViews(R"({"class":"ImageView","frame":[0,0,1,1],"image":"none.png"})"),
     "the picture /nowhere/none.png cannot be read: No such file or directory"},
    {"HugeText", withViews(R"({"class":"Label","frame":[0,0,90000,90000],"text":"a"})"),
     "texts and pictures too large"},
    {"LongText", withViews(R"({"class":"Label","frame":[0,0,9,9],"text":")" + repeated("a", 10'001) + "\"}"),
     "must be a text of at most 10000 bytes"},
    {"ManyViews", withViews(repeated(R"({"frame":[0,0,1,1]},)", 20'001) + R"({"frame":[0,0,1,1]})"),
     "must have 0 to 20000 elements"},
    {"DeepViews", withViews(repeated(R"({"frame":[0,0,1,1],"subviews":[)", 100) + repeated("]}", 100)),
     "is nested more than 128 deep"},
};
INSTANTIATE_TEST_SUITE_P(Views, ScenarioErrors, ::testing::ValuesIn(views), nameOf);

const BadScenario steps[] = {
    {"NoTime", withSteps(R"({"wait":true})"), "$.steps[0]: lacks the key \"at\""},
    {"NegativeTime", withSteps(R"({"at":-1,"wait":true})"), "$.steps[0].at: must be a number from 0"},
    {"TimeAsText", withSteps(R"({"at":"0","wait":true})"), "$.steps[0].at: must be a number"},
    {"NoAction", withSteps(R"({"at":0})"), "$.steps[0]: does nothing"},
    {"TwoActions", withSteps(R"({"at":0,"wait":true,"call":"reset"})"), "has two actions"},
    {"UnknownCall", withSteps(R"({"at":0,"call":"play"})"), "$.steps[0].call: must be one of"},
    {"UnknownScreen", withSteps(R"({"at":0,"present":"Ghost"})"), "$.steps[0].present: names no screen"},
    {"UnknownView", withSteps(R"({"at":0,"set":"ghost"})"), "$.steps[0].set: names no view"},
    {"SetClass", withSteps(R"({"at":0,"set":"box","class":"Label"})"), "has an unknown key \"class\""},
    {"SetSubviews", withSteps(R"({"at":0,"set":"box","subviews":[]})"), "has an unknown key \"subviews\""},
    {"SetText", withSteps(R"({"at":0,"set":"box","text":"a"})"), "$.steps[0]: the key \"text\" belongs"},
    {"Wait", withSteps(R"({"at":0,"wait":false})"), "$.steps[0].wait: must be true"},
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
INSTANTIATE_TEST_SUITE_P(Steps, ScenarioErrors, ::testing::ValuesIn(steps), nameOf);

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
INSTANTIATE_TEST_SUITE_P(Touches, ScenarioErrors, ::testing::ValuesIn(touches), nameOf);

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
INSTANTIATE_TEST_SUITE_P(Reactions, ScenarioErrors, ::testing::ValuesIn(reactions), nameOf);

}  // namespace
}  // namespace mireth::phone
