// The check finds what it is there to find: each limit of the rules, a little off, shows in few scenarios.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "model/ModelCheck.hpp"
#include "phone/Scenario.hpp"
#include "tests/phone/TemporaryFolder.hpp"

namespace mireth::model {

namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t enough = 1000;

struct Planted {
    const char* name;
    Rules rules;
};

void PrintTo(const Planted& planted, std::ostream* out) {
    *out << planted.name;
}

class PlantedDifference : public testing::TestWithParam<Planted> {};

TEST_P(PlantedDifference, IsFoundAndShortened) {
    const auto difference = findDifference(0, enough, GetParam().rules);
    ASSERT_TRUE(difference);
    EXPECT_NE(difference->expected, difference->actual);
    // A start, the four taps of a rage and one more at most, a stop.
    EXPECT_LE(difference->scenario.at("steps").size(), 7U) << difference->scenario.dump(1);
    EXPECT_LE(difference->scenario.at("screens").size(), 2U) << difference->scenario.dump(1);
}

INSTANTIATE_TEST_SUITE_P(Rules, PlantedDifference,
                         testing::Values(Planted{"rageAtTheThirdTap", {.rageTap = 3}},
                                         Planted{"rageAtTheFifthTap", {.rageTap = 5}},
                                         Planted{"errorsPairFor499Millis", {.errorMillis = 499}},
                                         Planted{"errorsPairFor501Millis", {.errorMillis = 501}},
                                         Planted{"frameToleranceOf4.9", {.frameTolerance = 4.9}},
                                         Planted{"frameToleranceOf5.1", {.frameTolerance = 5.1}},
                                         Planted{"slowDevicesWaitLonger", {.slowDeviceWait = 2001ms}},
                                         Planted{"averageDevicesWaitLess", {.averageDeviceWait = 1499ms}},
                                         Planted{"fastDevicesWaitLonger", {.fastDeviceWait = 1001ms}},
                                         Planted{"chunksOf19Frames", {.framesPerChunk = 19}},
                                         Planted{"slowerFrames", {.framePause = 501ms}},
                                         Planted{"alphaCounts", {.alphaCounts = true}},
                                         Planted{"placesMayDiffer", {.placesMayDiffer = true}},
                                         Planted{"tapsPairOnce", {.tapsPairOnce = true}},
                                         Planted{"rageGoesOn", {.rageGoesOn = true}},
                                         Planted{"pauseLetsPass", {.pauseLetsPass = true}},
                                         Planted{"tapsInPausesCount", {.tapsInPausesCount = true}}),
                         [](const auto& tested) {
                             std::string name = tested.param.name;
                             std::ranges::replace(name, '.', '_');
                             return name;
                         });

TEST(DifferenceReport, NamesTheSeedAndWritesTheScenarioForThePhone) {
    const phone::TemporaryFolder folder;
    const auto difference = findDifference(0, enough, {.errorMillis = 501});
    ASSERT_TRUE(difference);
    const std::string seed = difference->scenario.at("name").get<std::string>();
    const std::string text = report(*difference, folder.path());
    EXPECT_THAT(text, testing::StartsWith(seed + ": the library differs from the rules\n"));
    EXPECT_THAT(text, testing::HasSubstr(R"("signalId":"ErrorTap")"));

    const auto files = std::filesystem::directory_iterator(folder.path());
    ASSERT_EQ(std::distance(begin(files), end(files)), 1);
    const auto file = std::filesystem::directory_iterator(folder.path())->path();
    EXPECT_THAT(text, testing::EndsWith("mireth-phone --speed max " + file.string() + "\n"));
    EXPECT_EQ(phone::readScenario(file).steps.size(), difference->scenario.at("steps").size());
    std::stringstream written;
    written << std::ifstream(file).rdbuf();
    const auto again = compare(Json::parse(written.str()), "", {.errorMillis = 501});
    ASSERT_TRUE(again);
    EXPECT_EQ(again->expected, difference->expected);
}

}  // namespace

}  // namespace mireth::model
