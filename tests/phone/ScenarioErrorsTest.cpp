// Every kind of unusable file, setting and view, by name: the complaint says where and why.
#include "BadScenario.hpp"

namespace mireth::phone {
namespace {

class ScenarioErrors : public ::testing::TestWithParam<BadScenario> {};

TEST_P(ScenarioErrors, NamesThePlaceAndTheReasonOnOneLine) {
    expectComplaint(GetParam());
}

const BadScenario files[] = {
    {"Empty", "", "is not JSON: parse error at line 1"},
    {"NotJson", "{\"screens\": nonsense}", "is not JSON"},
    {"TrailingText", "{} {}", "is not JSON"},
    {"NotANumber", with(R"("window":{"scale":NaN})"), "is not JSON"},
    {"InfiniteNumber", with(R"("window":{"scale":1e999})"), "is not JSON"},
    {"InvalidUtf8", with("\"name\":\"\xff\xfe\""), "is not JSON"},
    {"DepthBomb", repeated("[", 100'000), "is nested more than 128 deep"},
    {"DoubledKey", R"({"name":"a","name":"b","screens":[],"steps":[]})", "$: has the key \"name\" twice"},
    {"AnArray", "[]", "$: must be an object"},
    {"NoScreens", R"({"steps":[]})", "$: lacks the key \"screens\""},
    {"NoSteps", R"({"screens":[{"name":"Home"}]})", "$: lacks the key \"steps\""},
    {"EmptyScreens", R"({"screens":[],"steps":[]})", "$.screens: must have 1 to 1000 elements, and has 0"},
    {"UnknownTopKey", with(R"("colour":1)"), "$: has an unknown key \"colour\""},
    {"DoubledKeyFarDown", R"({"steps":[{"at":0},{"at":[[],[1]]},{"set":{"x y":[1,2,{"b":1,"b":2}]}}]})",
     R"($.steps[2].set["x y"][2]: has the key "b" twice)"},
    {"DoubledKeyAfterLists", R"({"a":[[1],[],{}],"b":{},"b":1})", R"($: has the key "b" twice)"},
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
    {"UnknownIdiom", with(R"("device":{"idiom":"watch"})"), R"("desktop", "television", not "watch")"},
    {"ZeroMemory", with(R"("device":{"memoryMiB":0})"), "$.device.memoryMiB: must be a whole number from 1"},
    {"ZeroWindow", with(R"("window":{"width":0,"height":10})"), "$.window.width: must be a number from 1"},
    {"HugeWindow", with(R"("window":{"height":5000})"), "$.window.height: must be a number from 1 to 4096"},
    {"HugeScale", with(R"("window":{"scale":100})"), "$.window.scale: must be a number from 0.5 to 4"},
    {"BundleNumber", with(R"("bundle":{"VEX_VERSION":1})"), "$.bundle.VEX_VERSION: must be a text"},
    {"UnknownNetwork", with(R"("network":"5g")"), "$.network: must be one of"},
    {"ProjectNumber", with(R"("project":{"brandId":1})"), "$.project.brandId: must be a text"},
    {"MaskingText", with(R"("configuration":{"disableMasking":"no"})"), "must be true or false, not \"no\""},
    {"UnknownMaskedClass", with(R"("configuration":{"additionalViewTypesToMask":["Ghost"]})"),
     "$.configuration.additionalViewTypesToMask[0]: names no class of views: \"Ghost\""},
    {"ClassTwice", with(R"("viewClasses":[{"name":"A"},{"name":"A"}])"),
     "$.viewClasses[1].name: is the name of another class: \"A\""},
    {"BuiltInClassAgain", with(R"("viewClasses":[{"name":"Label"}])"), "is the name of another class"},
    {"UnknownSuperclass", with(R"("viewClasses":[{"name":"A","superclass":"B"},{"name":"B"}])"),
     "$.viewClasses[0].superclass: names no class that is known here: \"B\";"},
};
INSTANTIATE_TEST_SUITE_P(Settings, ScenarioErrors, ::testing::ValuesIn(settings), nameOf);

const BadScenario views[] = {
    {"ScreenTwice", R"({"screens":[{"name":"A"},{"name":"A"}],"steps":[]})",
     "$.screens[1].name: is the name of another screen, too: \"A\""},
    {"NoFrame", withViews("{}"), "$.screens[0].views[0]: lacks the key \"frame\""},
    {"ShortFrame", withViews(R"({"frame":[1,2,3]})"), "must have 4 elements, and has 3"},
    {"TextInFrame", withViews(R"({"frame":[1,2,3,"4"]})"),
     "$.screens[0].views[0].frame[3]: must be a number"},
    {"NegativeWidth", withViews(R"({"frame":[1,2,-3,4]})"),
     ".frame[2]: must be a number from 0 to 100000, not -3"},
    {"FarAway", withViews(R"({"frame":[1e9,2,3,4]})"),
     ".frame[0]: must be a number from -100000 to 100000, not 1000000000"},
    {"IdTwice", withViews(R"({"id":"a","frame":[0,0,1,1]},{"id":"a","frame":[0,0,1,1]})"),
     "$.screens[0].views[1].id: is used by another view, too: \"a\""},
    {"EmptyId", withViews(R"({"id":"","frame":[0,0,1,1]})"), "must not be empty"},
    {"UnknownKey", withViews(R"({"frame":[0,0,1,1],"colour":"#fff"})"), "has an unknown key \"colour\""},
    {"UnknownClass", withViews(R"({"class":"Ghost","frame":[0,0,1,1]})"),
     "$.screens[0].views[0].class: names no class of views: \"Ghost\""},
    {"WindowClass", withViews(R"({"class":"Window","frame":[0,0,1,1]})"),
     "names no class of views: \"Window\""},
    {"ShortColor", withViews(R"({"frame":[0,0,1,1],"background":"#fff"})"), "must be a colour such as"},
    {"BadColor", withViews(R"({"frame":[0,0,1,1],"background":"#ggffff"})"),
     R"(must be a colour such as "#3366ff" or "#3366ff80", not "#ggffff")"},
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

}  // namespace
}  // namespace mireth::phone
