// What a good scenario file means.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "phone/Scenario.hpp"

namespace mireth::phone {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(ScenarioReader, LeftOutKeysHaveTheirDefaults) {
    const Scenario scenario = parseScenario(R"({"screens":[{"name":"Home"}],"steps":[]})", "/folder");
    EXPECT_EQ(scenario.epochMillis, 1'700'000'000'000);
    EXPECT_EQ(scenario.uptimeSeconds, 1000);
    EXPECT_EQ(scenario.device.machine, "phone14,2");
    EXPECT_EQ(scenario.device.physicalMemory, std::uint64_t{4096} << 20U);
    EXPECT_EQ(scenario.windowSize, (Size{390, 844}));
    EXPECT_EQ(scenario.windowScale, 3);
    EXPECT_EQ(scenario.bundle.at("CFBundleShortVersionString"), "2.3.1");
    EXPECT_EQ(scenario.bundle.at("VEX_VERSION"), "1.0.0");
    EXPECT_EQ(scenario.brandId, "brand");
    EXPECT_EQ(scenario.projectId, "project");
    EXPECT_TRUE(scenario.network.satisfied && scenario.network.usesWifi);
    EXPECT_FALSE(scenario.disableMasking);
    EXPECT_TRUE(scenario.automaticNavigationTracking);
    EXPECT_EQ(scenario.screens.front().background, (Color{1, 1, 1, 1}));
}

TEST(ScenarioReader, IdiomsAreReadByName) {
    using platform::UserInterfaceIdiom;
    const auto idiom = [](const std::string& name) {
        return parseScenario(
                   R"({"device":{"idiom":")" + name + R"("},"screens":[{"name":"Home"}],"steps":[]})", "")
            .device.idiom;
    };
    EXPECT_EQ(idiom("phone"), UserInterfaceIdiom::phone);
    EXPECT_EQ(idiom("pad"), UserInterfaceIdiom::pad);
    EXPECT_EQ(idiom("desktop"), UserInterfaceIdiom::desktop);
    EXPECT_EQ(idiom("television"), UserInterfaceIdiom::television);
}

TEST(ScenarioReader, EachSideOfTheWindowHasItsOwnDefault) {
    const auto size = [](const std::string& window) {
        return parseScenario(R"({"window":)" + window + R"(,"screens":[{"name":"Home"}],"steps":[]})", "")
            .windowSize;
    };
    EXPECT_EQ(size(R"({"width":400})"), (Size{400, 844}));
    EXPECT_EQ(size(R"({"height":800})"), (Size{390, 800}));
    EXPECT_EQ(size(R"({"width":400,"height":800})"), (Size{400, 800}));
}

TEST(ScenarioReader, NullTakesADefaultAway) {
    const Scenario scenario = parseScenario(
        R"({"device":{"vendorId":null},"bundle":{"VEX_VERSION":null},"screens":[{"name":"Home"}],"steps":[]})",
        "");
    EXPECT_FALSE(scenario.device.identifierForVendor.has_value());
    EXPECT_FALSE(scenario.bundle.contains("VEX_VERSION"));
    EXPECT_TRUE(scenario.bundle.contains("CFBundleShortVersionString"));
}

TEST(ScenarioReader, ViewsKeepTheirOrderAndNesting) {
    const Scenario scenario = parseScenario(R"({"screens":[{"name":"Home","views":[
        {"id":"back","frame":[1,2,3,4],"background":"#ff000080","border":{"color":"#00ff00"},"opacity":0.5,
         "subviews":[{"id":"inner","class":"Label","frame":[0,0,1,1],"text":"a","font":["Inter",12],
                      "alignment":"center"}]},
        {"id":"front","class":"ImageView","frame":[0,0,1,1],"image":"a/b.png","animated":{"frame":[9,9,9,9]}}]}],
        "steps":[]})",
                                            "/folder");
    const auto& views = scenario.screens.front().views;
    ASSERT_EQ(views.size(), 2U);
    EXPECT_EQ(views[0].settings.frame, (Rect{1, 2, 3, 4}));
    EXPECT_NEAR((*views[0].settings.background)->alpha, 0.502, 0.001);
    EXPECT_EQ((*views[0].settings.border)->width, 1);
    EXPECT_EQ(views[0].subviews.front().id, "inner");
    EXPECT_EQ(views[0].subviews.front().settings.alignment, platform::TextAlignment::center);
    EXPECT_EQ(std::get<std::filesystem::path>(**views[1].settings.image), "/folder/a/b.png");
    EXPECT_EQ((*views[1].settings.animated)->frame, (Rect{9, 9, 9, 9}));
    EXPECT_EQ(views[1].path, "$.screens[0].views[1]");
}

TEST(ScenarioReader, NetworksAreReadByName) {
    const auto pathOf = [](const std::string& name) {
        return parseScenario(R"({"network":")" + name + R"(","screens":[{"name":"Home"}],"steps":[]})", "")
            .network;
    };
    using platform::NetworkPath;
    EXPECT_EQ(pathOf("none"), NetworkPath{});
    EXPECT_EQ(pathOf("wifi"), (NetworkPath{.satisfied = true, .usesWifi = true}));
    EXPECT_EQ(pathOf("cellular"), (NetworkPath{.satisfied = true, .usesCellular = true}));
    EXPECT_EQ(pathOf("wired"), (NetworkPath{.satisfied = true, .usesWired = true}));
    EXPECT_EQ(pathOf("wifi+cellular"),
              (NetworkPath{.satisfied = true, .usesWifi = true, .usesCellular = true}));
}

TEST(ScenarioReader, StepsAreReadWithTheirTimesAndExpectations) {
    const Scenario scenario =
        parseScenario(R"({"screens":[{"name":"Home","views":[{"id":"v","frame":[0,0,1,1]}]}],
        "steps":[{"at":0.25,"call":"startRecording","expect":"success"},
                 {"at":1,"set":"v","border":null,"hidden":true},
                 {"at":2,"logError":null},
                 {"at":3,"systemClock":-1.5},
                 {"at":4,"reportScreenChange":{"screenHierarchy":[{"screenName":"A"},{"screenName":"B","screenType":"Tab"}],
                          "changeType":"disappear","detectionType":"auto"}}]})",
                      "");
    const auto& steps = scenario.steps;
    EXPECT_EQ(steps[0].at, 250ms);
    EXPECT_EQ(steps[0].expect, "success");
    const auto& set = std::get<SetStep>(steps[1].action);
    EXPECT_TRUE(set.settings.border.has_value());
    EXPECT_FALSE(set.settings.border->has_value());
    EXPECT_EQ(set.settings.hidden, true);
    EXPECT_FALSE(std::get<LogErrorStep>(steps[2].action).message.has_value());
    EXPECT_EQ(std::get<SystemClockStep>(steps[3].action).jump, -1500ms);
    const auto& change = std::get<ReportScreenChangeStep>(steps[4].action);
    EXPECT_THAT(change.hierarchy,
                ElementsAre(ScreenHierarchyElement{"A", "Screen"}, ScreenHierarchyElement{"B", "Tab"}));
    EXPECT_EQ(change.changeType, ScreenChangeType::disappear);
    EXPECT_EQ(change.detectionType, ScreenDetectionType::automatic);
}

TEST(ScenarioReader, ASetWithoutValuesAndAnyTextAsVendorIdAreTaken) {
    const Scenario scenario = parseScenario(
        R"({"device":{"vendorId":"x"},"screens":[{"name":"Home","views":[{"id":"v","frame":[0,0,1,1]}]}],
            "steps":[{"at":0,"set":"v"}]})",
        "");
    EXPECT_EQ(scenario.device.identifierForVendor, "x");
    EXPECT_EQ(std::get<SetStep>(scenario.steps[0].action).id, "v");
}

TEST(ScenarioReader, TouchesHaveTheirDefaults) {
    const Scenario scenario = parseScenario(R"({"screens":[{"name":"Home"}],"steps":[
        {"at":0,"tap":[1,-2.5]},{"at":0,"tap":[1,2],"times":4,"interval":0.2},
        {"at":0,"swipe":{"from":[1,2],"to":[3,4]}},{"at":0,"swipe":{"from":[1,2],"to":[3,4],"seconds":2}},
        {"at":0,"cancelledTouch":[5,6]}]})",
                                            "");
    const auto tap = std::get<TapStep>(scenario.steps[0].action);
    EXPECT_EQ(tap.at, (Point{1, -2.5}));
    EXPECT_EQ(tap.times, 1U);
    EXPECT_EQ(tap.interval, 150ms);
    const auto run = std::get<TapStep>(scenario.steps[1].action);
    EXPECT_EQ(run.times, 4U);
    EXPECT_EQ(run.interval, 200ms);
    const auto swipe = std::get<SwipeStep>(scenario.steps[2].action);
    EXPECT_EQ(swipe.from, (Point{1, 2}));
    EXPECT_EQ(swipe.to, (Point{3, 4}));
    EXPECT_EQ(swipe.duration, 300ms);
    EXPECT_EQ(std::get<SwipeStep>(scenario.steps[3].action).duration, 2s);
    EXPECT_EQ(std::get<CancelledTouchStep>(scenario.steps[4].action).at, (Point{5, 6}));
}

TEST(ScenarioReader, ReactionsMayNameWhatComesLaterInTheFile) {
    const Scenario scenario = parseScenario(R"({"screens":[
        {"name":"Home","views":[{"frame":[0,0,9,9],"onTap":[{"set":"late","hidden":true},
            {"present":"Second","after":0.25}]},{"frame":[0,0,9,9],"onTap":[]},{"frame":[0,0,9,9]}]},
        {"name":"Second","views":[{"id":"late","frame":[0,0,9,9]}]}],"steps":[]})",
                                            "");
    const auto& views = scenario.screens[0].views;
    ASSERT_TRUE(views[0].onTap.has_value());
    const auto& reactions = *views[0].onTap;
    ASSERT_EQ(reactions.size(), 2U);
    EXPECT_EQ(std::get<SetStep>(reactions[0].action).settings.hidden, true);
    EXPECT_EQ(reactions[0].after, 0ms);
    EXPECT_EQ(std::get<PresentStep>(reactions[1].action).screen, "Second");
    EXPECT_EQ(reactions[1].after, 250ms);
    EXPECT_EQ(reactions[1].path, "$.screens[0].views[0].onTap[1]");
    ASSERT_TRUE(views[1].onTap.has_value());
    EXPECT_TRUE(views[1].onTap->empty());
    EXPECT_FALSE(views[2].onTap.has_value());
}

}  // namespace
}  // namespace mireth::phone
