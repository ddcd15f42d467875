// What one captured frame of a Qt window costs the main thread, beside Qt's own picture of the same window.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSlider>
#include <chrono>
#include <memory>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"

namespace mireth::benchmarks {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int objects = 300;

/// What the frame recorder does at a tick.
class Capture {
  public:
    explicit Capture(std::shared_ptr<platform::Window> window)
        : window_(std::move(window)), renderer_(graphics_, window_->frame().size()) {}

    platform::Image operator()() {
        const auto layers = replicator_.replicateLayerTree(*window_, true);
        auto image =
            renderer_.image([&layers](platform::GraphicsContext& context) { layers->render(context); });
        flushLayerTree(*layers);
        return image;
    }

    /// Of all that, what the platform for Qt does.
    void mirror() const { benchmark::DoNotOptimize(window_->subviews()); }

  private:
    const std::shared_ptr<platform::Window> window_;
    platform::CairoGraphics graphics_;
    LayerReplicator replicator_;
    OptimizedImageRenderer renderer_;
};

/// Turn by turn, so that what else the machine does touches both alike.
template <class Bare>
void compare(benchmark::State& state, Capture& capture, const Bare& bare) {
    std::chrono::duration<double> ours{};
    std::chrono::duration<double> theirs{};
    std::chrono::duration<double> mirror{};
    for (auto _ : state) {
        const auto start = Clock::now();
        benchmark::DoNotOptimize(capture());
        const auto middle = Clock::now();
        benchmark::DoNotOptimize(bare());
        ours += middle - start;
        const auto end = Clock::now();
        theirs += end - middle;
        capture.mirror();
        mirror += Clock::now() - end;
    }
    const auto turns = static_cast<double>(state.iterations());
    state.counters["capture_ms"] = ours.count() * 1000 / turns;
    state.counters["mirror_ms"] = mirror.count() * 1000 / turns;
    state.counters["qt_ms"] = theirs.count() * 1000 / turns;
    state.counters["ratio"] = ours / theirs;
}

QWidget* widgetNumber(int number) {
    switch (number % 5) {
        case 0:
            return new QLabel("A label");
        case 1:
            return new QPushButton("A button");
        case 2:
            return new QLineEdit("Some text");
        case 3:
            return new QCheckBox("A choice");
        default:
            return new QSlider(Qt::Horizontal);
    }
}

void widgets(benchmark::State& state) {
    QWidget window;
    QGridLayout layout(&window);
    constexpr int columns = 10;
    for (int number = 0; number < objects; ++number) {
        layout.addWidget(widgetNumber(number), number / columns, number % columns);
    }
    window.resize(1000, 1000);
    window.show();
    const qt::QtPlatform platform;
    Capture capture(platform.windowOf(window));
    compare(state, capture, [&window] { return window.grab(); });
}
BENCHMARK(widgets)->Unit(benchmark::kMillisecond);

void items(benchmark::State& state) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(
        "import QtQuick\nimport QtQuick.Window\n"
        "Window { width: 390; height: 844; visible: true; Grid { columns: 10; Repeater { model: 150;"
        " Rectangle { width: 38; height: 50; radius: 6; color: 'lightgrey'; Text { text: 'Text' } } } } }",
        {});
    const std::unique_ptr<QObject> root(component.create());
    auto* const window = qobject_cast<QQuickWindow*>(root.get());
    if (window == nullptr) {
        state.SkipWithError("the scene could not be made");
        return;
    }
    QCoreApplication::processEvents();
    const qt::QtPlatform platform;
    Capture capture(platform.windowOf(*window));
    // The software scene graph draws what has changed only; here that is everything.
    int turn = 0;
    compare(state, capture, [window, &turn] {
        window->setColor(++turn % 2 == 0 ? Qt::white : Qt::lightGray);
        return window->grabWindow();
    });
}
BENCHMARK(items)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mireth::benchmarks

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
