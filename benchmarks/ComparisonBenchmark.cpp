// What judging a tap costs the main thread, beside the copy that a frame is drawn from.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>

#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "benchmarks/SampleScreen.hpp"

namespace mireth::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Copies `window` as for a frame, lets go of the copy, and returns the seconds that took.
double copyFor(LayerReplicator& replicator, const platform::View& window, bool masking) {
    const auto start = Clock::now();
    benchmark::DoNotOptimize(replicator.replicateLayerTree(window, masking));
    return secondsSince(start);
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
        const auto start = Clock::now();
        const bool equal = LayerComparator::compareLayers(before, after);
        const double spent = secondsSince(start);
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
        const auto start = Clock::now();
        {
            const auto snapshot = layers.captureLayerSnapshot();
            const auto text = texts.serializeContent();
            benchmark::DoNotOptimize(snapshot.layers().data());
            benchmark::DoNotOptimize(text.data());
        }
        const double spent = secondsSince(start);
        ours += spent;
        state.SetIterationTime(spent);
    }
    showBesideCopies(state, ours, masked, full);
}
BENCHMARK(captureState)->Arg(300)->Arg(1000)->Arg(3000)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mireth::benchmarks
