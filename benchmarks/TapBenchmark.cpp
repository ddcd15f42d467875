// What a tap costs the main thread, and what an error that follows it costs the thread that logs it.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "PrivateSide/Detection/TimelineEventDetector.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "benchmarks/LoggingHost.hpp"
#include "benchmarks/SampleScreen.hpp"
#include "tests/support/ManualMainQueue.hpp"

namespace mireth::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

template <class Action>
double secondsOf(Action action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A window with the detector attached, and a finger.
class TappedWindow {
  public:
    explicit TappedWindow(std::size_t views) : window(makeScreen(views)) {
        detector_.startDetection([this](const EventData&) { ++found; });
        queue_->runAll();
    }

    /// Touches the window's middle and lets go, as a toolkit reports it.
    void tap() {
        touch_.identity = ++lastIdentity_;
        for (const auto phase : {platform::TouchPhase::began, platform::TouchPhase::ended}) {
            touch_.phase = phase;
            window->sendEvent({touch_.timestamp, {touch_}});
        }
    }

    /// Lets the time pass after which the taps so far are judged.
    void judgeTaps() { queue_->advance(platform::Seconds(3)); }

    const std::shared_ptr<platform::Window> window;
    /// What was delivered so far: taps and, after the wait, dead taps.
    std::int64_t found = 0;

  private:
    const std::shared_ptr<test::ManualMainQueue> queue_ = std::make_shared<test::ManualMainQueue>();
    SilentLog log_;
    TimelineEventDetector detector_{
        log_.log, window,
        std::make_unique<MirethGestureRecognizer>(log_.log, std::make_shared<GestureRecognizerObserver>()),
        TimelineEventDetector::Environment{queue_, [] { return Date(1); }, DevicePerformanceEvaluator(0)}};
    platform::Touch touch_ = [this] {
        platform::Touch touch;
        touch.locationInWindow = {195, 422};
        touch.timestamp = 1000;
        touch.window = window;
        touch.view = window->subviews().front();
        return touch;
    }();
    std::uint64_t lastIdentity_ = 0;
};

/// The middle one of several times, which a few interruptions do not change.
double medianOf(std::vector<double> seconds) {
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::ranges::nth_element(seconds, middle);
    return *middle;
}

/// Handling one tap (classification, the four listeners, the state of the screen before it, its texts) while
/// others wait to be judged, beside the masked copy of the same screen that a frame is drawn from, turn by
/// turn. Medians; the time shown is the mean of a tap.
void tap(benchmark::State& state) {
    TappedWindow tapped(static_cast<std::size_t>(state.range(0)));
    const auto inFlight = state.range(1);
    LayerReplicator replicator;
    std::vector<double> tapping;
    std::vector<double> judging;
    std::vector<double> copying;
    for (auto _ : state) {
        for (std::int64_t number = 0; number < inFlight; ++number) {
            tapped.tap();
        }
        tapping.push_back(secondsOf([&] { tapped.tap(); }));
        judging.push_back(secondsOf([&] { tapped.judgeTaps(); }));
        copying.push_back(secondsOf(
            [&] { benchmark::DoNotOptimize(replicator.replicateLayerTree(*tapped.window, true)); }));
        state.SetIterationTime(tapping.back());
    }
    if (tapped.found != 2 * state.iterations() * (inFlight + 1)) {
        state.SkipWithError("not every tap was found, and found dead");
    }
    const double copy = medianOf(std::move(copying));
    const double tap = medianOf(std::move(tapping));
    state.counters["tap_us"] = 1e6 * tap;
    state.counters["copy_us"] = 1e6 * copy;
    state.counters["judge_us"] = 1e6 * medianOf(std::move(judging)) / static_cast<double>(inFlight + 1);
    state.counters["ratio"] = tap / copy;
}
BENCHMARK(tap)
    ->ArgNames({"views", "inFlight"})
    ->Args({300, 0})
    ->Args({300, 10})
    ->Args({3000, 0})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

/// A thread of the host logs 10,000 errors a second for two seconds, and main, on which the user taps, pairs
/// each. The time shown is the median that a call keeps the thread waiting.
void logErrors(benchmark::State& state) {
    for (auto _ : state) {
        LoggingHost host;
        const auto outcome = host.run(std::chrono::seconds(2), std::chrono::microseconds(100));
        state.SetIterationTime(outcome.waitAt(0.5));
        state.counters["p99_us"] = 1e6 * outcome.waitAt(0.99);
        state.counters["logged"] = static_cast<double>(outcome.waits.size());
        state.counters["lost"] =
            static_cast<double>(outcome.waits.size()) - static_cast<double>(outcome.paired);
    }
}
BENCHMARK(logErrors)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mireth::benchmarks
