#include "PrivateSide/Api/NetworkStateProvider.hpp"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "MirethVex/Base/PassthroughSubject.hpp"
#include "support/FakePathMonitor.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::FakePathMonitor;
using test::PathScript;

class NetworkState : public testing::Test {
  protected:
    std::unique_ptr<NetworkStateProvider> makeProvider() {
        return std::make_unique<NetworkStateProvider>(
            capture.log(), std::make_unique<FakePathMonitor>(script),
            [this](Work work) { background.push_back(std::move(work)); });
    }
    void runBackground() {
        for (; !background.empty(); background.pop_front()) {
            background.front()();
        }
    }

    test::LogCapture capture;
    std::shared_ptr<PathScript> script = std::make_shared<PathScript>();
    std::deque<Work> background;
};

TEST_F(NetworkState, ConstructionReturnsBeforeTheMonitorStarts) {
    const auto provider = makeProvider();
    EXPECT_EQ(script->starts, 0);
    runBackground();
    EXPECT_EQ(script->starts, 1);
}

TEST_F(NetworkState, ABackgroundThatTakesNoMoreWorkCostsItsEndALine) {
    auto provider = std::make_unique<NetworkStateProvider>(
        capture.log(), std::make_unique<FakePathMonitor>(script), [this](Work work) {
            if (!background.empty()) {
                throw std::runtime_error("the pool is closed");
            }
            background.push_back(std::move(work));
        });
    testing::internal::CaptureStderr();
    provider.reset();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: the background executor threw: the pool is closed\n");
    runBackground();
    EXPECT_EQ(script->starts, 0);
}

TEST_F(NetworkState, BeforeTheFirstUpdateThereIsNoConnectionAndTheTypeIsUnknown) {
    const auto provider = makeProvider();
    runBackground();
    EXPECT_FALSE(provider->hasConnection());
    EXPECT_EQ(provider->getConnectionType(), NetworkType::unknown);
}

TEST_F(NetworkState, TheConnectionIsTheLatestPathsStatus) {
    const auto provider = makeProvider();
    runBackground();
    script->report(true, true);
    EXPECT_TRUE(provider->hasConnection());
    script->report(false, true);
    EXPECT_FALSE(provider->hasConnection());
}

TEST_F(NetworkState, APathThatDoesNotConnectHasItsTypeAllTheSame) {
    const auto provider = makeProvider();
    runBackground();
    script->report(false, true);
    EXPECT_FALSE(provider->hasConnection());
    EXPECT_EQ(provider->getConnectionType(), NetworkType::wifi);
    script->report(false, false, true);
    EXPECT_EQ(provider->getConnectionType(), NetworkType::mobileData);
}

TEST_F(NetworkState, WifiWinsOverCellular) {
    const auto provider = makeProvider();
    runBackground();
    script->report(true, true, true);
    EXPECT_EQ(provider->getConnectionType(), NetworkType::wifi);
    script->report(true, false, true);
    EXPECT_EQ(provider->getConnectionType(), NetworkType::mobileData);
    script->report(true, true, false);
    EXPECT_EQ(provider->getConnectionType(), NetworkType::wifi);
}

TEST_F(NetworkState, AWiredPathIsConnectedAndOfUnknownType) {
    const auto provider = makeProvider();
    runBackground();
    script->report(true, false, false, true);
    EXPECT_TRUE(provider->hasConnection());
    EXPECT_EQ(provider->getConnectionType(), NetworkType::unknown);
}

TEST_F(NetworkState, MonitorsUntilItIsReleased) {
    auto provider = makeProvider();
    runBackground();
    EXPECT_EQ(script->cancels, 0);
    provider.reset();
    runBackground();
    EXPECT_GE(script->cancels, 1);
}

TEST_F(NetworkState, AProviderReleasedBeforeTheTaskRunsNeverStarts) {
    makeProvider().reset();
    runBackground();
    EXPECT_EQ(script->starts, 0);
}

TEST_F(NetworkState, IsNeverReleasedWhileTheMonitorStarts) {
    struct PlainMonitor final : platform::PathMonitor {
        void start(UpdateHandler given) override { handler = std::move(given); }
        void cancel() override { handler = nullptr; }
        UpdateHandler handler;  // touched by both, without a lock of its own
    };
    for (int round = 0; round < 200; ++round) {
        std::vector<std::thread> threads;
        {
            const NetworkStateProvider provider(
                capture.log(), std::make_unique<PlainMonitor>(),
                [&](Work work) { threads.emplace_back([work = std::move(work)]() mutable { work(); }); });
        }
        for (auto& thread : threads) {
            thread.join();
        }
    }
}

TEST(NetworkType, RawValues) {
    EXPECT_EQ(rawValue(NetworkType::wifi), "WIFI");
    EXPECT_EQ(rawValue(NetworkType::mobileData), "MOBILE_DATA");
    EXPECT_EQ(rawValue(NetworkType::unknown), "UNKNOWN");
}

}  // namespace
}  // namespace mireth
