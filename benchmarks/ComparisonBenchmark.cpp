// What comparing two states of a screen costs the main thread, beside copying that screen.
#include <benchmark/benchmark.h>
#include <time.h>

#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "benchmarks/SampleScreen.hpp"

namespace mireth::benchmarks {
namespace {

/// CPU time of this thread: these are microseconds, and what else the machine does would drown them.
double threadSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Action>
double secondsOf(Action action) {
    const double start = threadSeconds();
    action();
    return threadSeconds() - start;
}

/// Two states of a screen that did not change, which is the longest comparison there is; beside the copies
/// of that screen that a frame is drawn from, and beside the capture of one of the two states.
void compareEqual(benchmark::State& state) {
    const auto window = makeScreen(static_cast<std::size_t>(state.range(0)));
    LayerReplicator replicator;
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    const auto after = comparator.captureLayerSnapshot();
    double comparing = 0;
    double maskedCopies = 0;
    double unmaskedCopies = 0;
    double captures = 0;
    for (auto _ : state) {
        maskedCopies +=
            secondsOf([&] { benchmark::DoNotOptimize(replicator.replicateLayerTree(*window, true)); });
        unmaskedCopies +=
            secondsOf([&] { benchmark::DoNotOptimize(replicator.replicateLayerTree(*window, false)); });
        captures += secondsOf([&] {
            const auto snapshot = comparator.captureLayerSnapshot();
            benchmark::DoNotOptimize(snapshot.layers().data());
        });
        bool equal = false;
        const double spent = secondsOf([&] { equal = LayerComparator::compareLayers(before, after); });
        if (!equal) {
            state.SkipWithError("the two states differ");
        }
        comparing += spent;
        state.SetIterationTime(spent);
    }
    state.counters["masked_copy_us"] = 1e6 * maskedCopies / static_cast<double>(state.iterations());
    state.counters["ratio_masked"] = comparing / maskedCopies;
    state.counters["ratio_unmasked"] = comparing / unmaskedCopies;
    state.counters["ratio_capture"] = comparing / captures;
}
BENCHMARK(compareEqual)->Arg(300)->Arg(1000)->Arg(3000)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mireth::benchmarks
