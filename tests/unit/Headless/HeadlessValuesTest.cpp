// The scripted clocks, chance, stores, log and network.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <vector>

#include "MirethVex/Headless/CapturedSystemLog.hpp"
#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "MirethVex/Headless/HeadlessClock.hpp"
#include "MirethVex/Headless/HeadlessNetwork.hpp"
#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "MirethVex/Headless/SeededRandomSource.hpp"

namespace mireth::headless {
namespace {

using namespace std::chrono_literals;
using platform::NetworkPath;
using platform::Seconds;
using ::testing::ElementsAre;

TEST(HeadlessClock, BothClocksAdvanceTogetherToTheMillisecond) {
    const auto queue = std::make_shared<VirtualMainQueue>();
    const HeadlessClock clock(queue, 1'700'000'000'001, 1000);
    EXPECT_EQ(clock.now().toTimestampMillis(), 1'700'000'000'001);
    queue->advance(Seconds(0.123));
    EXPECT_EQ(clock.now().toTimestampMillis(), 1'700'000'000'124);
    EXPECT_DOUBLE_EQ(clock.uptimeSeconds(), 1000.123);
}

TEST(HeadlessClock, AJumpMovesTheWallClockOnly) {
    const auto queue = std::make_shared<VirtualMainQueue>();
    HeadlessClock clock(queue, 1'700'000'000'000, 1000);
    clock.jump(-3600s);
    EXPECT_EQ(clock.now().toTimestampMillis(), 1'699'996'400'000);
    EXPECT_DOUBLE_EQ(clock.uptimeSeconds(), 1000);
}

TEST(SeededRandomSource, OneSeedGivesOneSequence) {
    SeededRandomSource one(7);
    SeededRandomSource two(7);
    SeededRandomSource other(8);
    EXPECT_EQ(one.uuid(), two.uuid());
    EXPECT_EQ(one.uniformReal(0, 100), two.uniformReal(0, 100));
    EXPECT_NE(one.uuid(), other.uuid());
}

TEST(SeededRandomSource, TheFirstDrawsOfSeedZeroAreFixedForEveryMachine) {
    SeededRandomSource source(0);
    EXPECT_EQ(source.uuid(), "28E837C5-CB41-4C3E-BDFD-3A7C3E40F98B");
}

TEST(SeededRandomSource, UuidsAreVersionFourInUpperCase) {
    SeededRandomSource source(1);
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int index = 0; index < 200; ++index) {
        const std::string uuid = source.uuid();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
        EXPECT_TRUE(seen.insert(uuid).second);
    }
}

TEST(SeededRandomSource, DrawsStayInTheirRange) {
    SeededRandomSource source(2);
    std::set<std::int64_t> seen;
    for (int index = 0; index < 1000; ++index) {
        const double real = source.uniformReal(0, 100);
        EXPECT_GE(real, 0);
        EXPECT_LE(real, 100);
        seen.insert(source.uniformBelow(5));
    }
    EXPECT_THAT(seen, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(source.uniformBelow(1), 0);
}

TEST(MemoryKeyValueStore, WhatIsWrittenShowsAfterTheNextSynchronize) {
    MemoryKeyValueStore store(TextByKey{{"a", "1"}});
    store.set("a", "2");
    EXPECT_EQ(store.string("a"), "1");
    store.setReadable(false);
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(store.string("a"), "1");
    store.setReadable(true);
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(store.string("a"), "2");
    EXPECT_EQ(store.string("b"), std::nullopt);
}

TEST(CapturedSystemLog, KeepsTheLatestRecords) {
    CapturedSystemLog log(false, 2);
    log.writeLegacy("s", "c", platform::SystemLogType::info, "1");
    log.writeLegacy("s", "c", platform::SystemLogType::info, "2");
    log.writeStructured("s", "c", platform::SystemLogType::error, "3");
    const SystemLogRecord second{false, "s", "c", platform::SystemLogType::info, "2"};
    const SystemLogRecord third{true, "s", "c", platform::SystemLogType::error, "3"};
    EXPECT_THAT(log.takeRecords(), ElementsAre(second, third));
    EXPECT_TRUE(log.records().empty());
    EXPECT_FALSE(log.hasStructuredLog());
}

TEST(HeadlessApplication, ObserversHearOfTheBackgroundUntilTheirTokenGoes) {
    HeadlessApplication application;
    int heard = 0;
    {
        const auto token = application.observeDidEnterBackground([&] { ++heard; });
        application.moveToBackground();
        application.moveToBackground();
    }
    application.moveToBackground();
    EXPECT_EQ(heard, 2);
}

class HeadlessNetworkTest : public ::testing::Test {
  protected:
    std::shared_ptr<VirtualMainQueue> queue = std::make_shared<VirtualMainQueue>();
    HeadlessNetwork network{std::make_shared<LoopBackgroundExecutor>(queue)};
    std::unique_ptr<platform::PathMonitor> monitor = network.makeMonitor();
    std::vector<NetworkPath> seen;
    const NetworkPath wifi{.satisfied = true, .usesWifi = true};
    const NetworkPath none{};
};

TEST_F(HeadlessNetworkTest, AMonitorReportsTheCurrentPathAndEveryChange) {
    monitor->start([this](const NetworkPath& path) { seen.push_back(path); });
    EXPECT_TRUE(seen.empty());
    network.setPath(none);
    network.setPath(none);
    network.setPath(wifi);
    queue->drain();
    EXPECT_THAT(seen, ElementsAre(wifi, none, wifi));
}

TEST_F(HeadlessNetworkTest, ACancelledMonitorReportsNothingMore) {
    monitor->start([this](const NetworkPath& path) { seen.push_back(path); });
    queue->drain();
    network.setPath(none);
    monitor->cancel();
    queue->drain();
    EXPECT_THAT(seen, ElementsAre(wifi));
}

TEST_F(HeadlessNetworkTest, AMonitorMayBeCancelledFromItsHandler) {
    monitor->start([this](const NetworkPath& path) {
        seen.push_back(path);
        monitor->cancel();
    });
    network.setPath(none);
    queue->drain();
    EXPECT_THAT(seen, ElementsAre(wifi));
}

}  // namespace
}  // namespace mireth::headless
