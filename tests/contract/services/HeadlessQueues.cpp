// Holds the headless queues and executors, and the network that reports through them, to the contracts.
#include <chrono>
#include <thread>

#include "BackgroundExecutorContract.hpp"
#include "DrivenLoop.hpp"
#include "MainQueueContract.hpp"
#include "MirethVex/Headless/HeadlessNetwork.hpp"
#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"
#include "MirethVex/Headless/TrackedBackgroundExecutor.hpp"
#include "ValueServiceContracts.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"

namespace mireth::test {

namespace {

using namespace headless;

class VirtualMainQueueHarness final : public MainQueueHarness {
  public:
    explicit VirtualMainQueueHarness(std::optional<double> pace)
        : queue_(std::make_unique<VirtualMainQueue>(pace, [this](std::string_view) { ++errors_; })) {}

    platform::MainQueue& queue() override { return *queue_; }
    double now() override { return std::chrono::duration<double>(queue_->now()).count(); }
    bool runUntil(const std::function<bool()>& done, double limit) override {
        const auto span = std::chrono::duration_cast<VirtualMainQueue::Instant>(platform::Seconds(limit));
        return queue_->runUntil(done, queue_->now() + span);
    }
    void destroyQueue() override { queue_.reset(); }
    int loggedErrors() override { return errors_; }

  private:
    int errors_ = 0;
    std::unique_ptr<VirtualMainQueue> queue_;
};

/// Ends with its loop, as the scripted phone's does.
class LoopExecutorHarness final : public BackgroundExecutorHarness {
  public:
    platform::BackgroundExecutor& executor() override { return executor_; }
    void destroyExecutor() override { loop_.end(); }
    int loggedErrors() override { return loop_.loggedErrors(); }

  private:
    DrivenLoop loop_;
    LoopBackgroundExecutor executor_{loop_.queue()};
};

class TrackedExecutorHarness final : public BackgroundExecutorHarness {
  public:
    platform::BackgroundExecutor& executor() override { return *executor_; }
    void destroyExecutor() override {
        executor_.reset();
        EXPECT_EQ(queue_.inFlight()->count(), 0u);
    }
    int loggedErrors() override { return errors_.count(); }

  private:
    Counter errors_;
    VirtualMainQueue queue_{1.0};
    std::unique_ptr<TrackedBackgroundExecutor> executor_ = std::make_unique<TrackedBackgroundExecutor>(
        std::make_shared<platform::ThreadPoolExecutor>(2, [this](std::string_view) { errors_.increment(); }),
        queue_.inFlight());
};

class LoopNetworkHarness final : public PathMonitorHarness {
  public:
    std::unique_ptr<platform::PathMonitor> makeMonitor() override { return network_.makeMonitor(); }

  private:
    DrivenLoop loop_;
    HeadlessNetwork network_{std::make_shared<LoopBackgroundExecutor>(loop_.queue())};
};

class ThreadsNetworkHarness final : public PathMonitorHarness {
  public:
    std::unique_ptr<platform::PathMonitor> makeMonitor() override { return network_.makeMonitor(); }

  private:
    HeadlessNetwork network_{std::make_shared<platform::ThreadPoolExecutor>(2)};
};

Implementation<MainQueueHarness> makeQueue(std::string name, std::optional<double> pace) {
    return {std::move(name), [pace] { return std::make_unique<VirtualMainQueueHarness>(pace); }};
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Headless, MainQueueContract,
                         testing::Values(makeQueue("Virtual", std::nullopt), makeQueue("Paced", 1.0)),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Headless, BackgroundExecutorContract,
    testing::Values(implementation<BackgroundExecutorHarness, LoopExecutorHarness>("Loop"),
                    implementation<BackgroundExecutorHarness, TrackedExecutorHarness>("Tracked")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Headless, PathMonitorContract,
    testing::Values(implementation<PathMonitorHarness, LoopNetworkHarness>("OnTheLoop"),
                    implementation<PathMonitorHarness, ThreadsNetworkHarness>("OnThreads")),
    nameOfImplementation);

}  // namespace mireth::test
