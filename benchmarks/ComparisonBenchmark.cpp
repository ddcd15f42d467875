// What judging a tap costs the main thread, beside the copy that a frame is drawn from.
#include <benchmark/benchmark.h>
#include <time.h>

#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"
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

/// Copies `window` as for a frame, lets go of the copy, and returns the seconds that took.
double copyFor(LayerReplicator& replicator, const platform::View& window, bool masking) {
    const double start = threadSeconds();
    benchmark::DoNotOptimize(replicator.replicateLayerTree(window, masking));
    return threadSeconds() - start;
}

void showBesideCopies(benchmark::State& state, double ours, double maskedCopies, double fullCopies) {
    state.counters["masked_copy_us"] = 1e6 * maskedCopies / static_cast<double>(state.iterations());
    state.counters["ratio_masked"] = ours / maskedCopies;
    state.counters["ratio_unmasked"] = ours / fullCopies;
}

/// Two states of a screen that did not change: the longest comparison there is.
void compareEqual(benchmark::State& state) {
    const auto window = makeScreen(static_cast<std::size_t>(state.range(0)));
    LayerReplicator replicator;
    LayerComparator comparator(window);
    const auto before = comparator.captureLayerSnapshot();
    const auto after = comparator.captureLayerSnapshot();
    double ours = 0;
    double masked = 0;
    double full = 0;
    for (auto _ : state) {
        masked += copyFor(replicator, *window, true);
        full += copyFor(replicator, *window, false);
        const double start = threadSeconds();
        const bool equal = LayerComparator::compareLayers(before, after);
        const double spent = threadSeconds() - start;
        if (!equal) {
            state.SkipWithError("the two states differ");
        }
        ours += spent;
        state.SetIterationTime(spent);
    }
    showBesideCopies(state, ours, masked, full);
}
BENCHMARK(compareEqual)->Arg(300)->Arg(1000)->Arg(3000)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// What a tap captures while it is being handled: layers and texts.
void captureState(benchmark::State& state) {
    const auto window = makeScreen(static_cast<std::size_t>(state.range(0)));
    LayerReplicator replicator;
    LayerComparator layers(window);
    ViewContentComparator texts(window);
    double ours = 0;
    double masked = 0;
    double full = 0;
    for (auto _ : state) {
        masked += copyFor(replicator, *window, true);
        full += copyFor(replicator, *window, false);
        const double start = threadSeconds();
        {
            const auto snapshot = layers.captureLayerSnapshot();
            const auto text = texts.serializeContent();
            benchmark::DoNotOptimize(snapshot.layers().data());
            benchmark::DoNotOptimize(text.data());
        }
        const double spent = threadSeconds() - start;
        ours += spent;
        state.SetIterationTime(spent);
    }
    showBesideCopies(state, ours, masked, full);
}
BENCHMARK(captureState)->Arg(300)->Arg(1000)->Arg(3000)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mireth::benchmarks
