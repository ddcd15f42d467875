// What one captured frame costs the main thread, beside the same blocks drawn with bare Cairo.
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <chrono>
#include <numbers>

#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"
#include "benchmarks/SampleScreen.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"

namespace mireth::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// What the frame recorder does at a tick of a screen that stands still: all of the picture is compared.
platform::Image captureFrame(LayerReplicator& replicator, OptimizedImageRenderer& renderer,
                             const platform::View& window, const platform::Image& last) {
    const auto layers = replicator.replicateLayerTree(window, true);
    platform::Image image =
        renderer.image([&layers](platform::GraphicsContext& context) { layers->render(context); });
    flushLayerTree(*layers);
    return std::ranges::equal(image.pixels(), last.pixels()) ? last : image;
}

void fillWithCairo(cairo_t* cairo, const Block& block) {
    const auto& [x, y, width, height] = block.rect;
    const double radius = std::min({block.cornerRadius, width / 2, height / 2});
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, x + width - radius, y + radius, radius, -quarter, 0);
    cairo_arc(cairo, x + width - radius, y + height - radius, radius, 0, quarter);
    cairo_arc(cairo, x + radius, y + height - radius, radius, quarter, 2 * quarter);
    cairo_arc(cairo, x + radius, y + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cairo);
    cairo_set_source_rgba(cairo, block.color.red, block.color.green, block.color.blue, block.color.alpha);
    cairo_fill(cairo);
}

/// The same picture by whoever knows all blocks beforehand and masks nothing.
class BareCairo {
  public:
    explicit BareCairo(std::size_t views) : cards_(views / viewsPerCard) {}
    ~BareCairo() { cairo_surface_destroy(surface_); }
    BareCairo(const BareCairo&) = delete;
    BareCairo& operator=(const BareCairo&) = delete;

    void draw() const {
        cairo_t* cairo = cairo_create(surface_);
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_paint(cairo);
        for (std::size_t number = 0; number < cards_; ++number) {
            const Block card = cardBlock(number, cards_);
            fillWithCairo(cairo, card);
            cairo_save(cairo);
            cairo_translate(cairo, card.rect.x, card.rect.y);
            for (std::size_t part = 0; part + 1 < viewsPerCard; ++part) {
                fillWithCairo(cairo, partBlock(part, card.rect.size()));
            }
            cairo_restore(cairo);
        }
        cairo_destroy(cairo);
        cairo_surface_flush(surface_);
    }

  private:
    const std::size_t cards_;
    cairo_surface_t* const surface_ = cairo_image_surface_create(
        CAIRO_FORMAT_RGB24, static_cast<int>(screenSize.width), static_cast<int>(screenSize.height));
};

/// Both ways turn by turn, so that what else the machine does touches them alike. The time shown is ours.
void capture(benchmark::State& state) {
    const auto views = static_cast<std::size_t>(state.range(0));
    const auto window = makeScreen(views);
    platform::CairoGraphics graphics;
    OptimizedImageRenderer renderer(graphics, screenSize);
    LayerReplicator replicator;
    const BareCairo bare(views);
    platform::Image last;
    double ours = 0;
    double theirs = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        last = captureFrame(replicator, renderer, *window, last);
        const double spent = secondsSince(start);
        const auto bareStart = Clock::now();
        bare.draw();
        theirs += secondsSince(bareStart);
        ours += spent;
        state.SetIterationTime(spent);
    }
    state.counters["bare_ms"] = 1e3 * theirs / static_cast<double>(state.iterations());
    state.counters["ratio"] = ours / theirs;
}
BENCHMARK(capture)->Arg(30)->Arg(300)->Arg(1000)->Arg(3000)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Copying and masking alone.
void replicate(benchmark::State& state) {
    const auto window = makeScreen(static_cast<std::size_t>(state.range(0)));
    LayerReplicator replicator;
    for (auto _ : state) {
        benchmark::DoNotOptimize(replicator.replicateLayerTree(*window, true));
    }
}
BENCHMARK(replicate)->Arg(30)->Arg(300)->Arg(1000)->Arg(3000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mireth::benchmarks
