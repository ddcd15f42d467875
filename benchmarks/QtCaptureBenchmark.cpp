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
#include <memory>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"
#include "benchmarks/PairedTimes.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"

namespace mireth::benchmarks {
namespace {

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
    /// The same with the masked copy that the picture is drawn from.
    void copy() { benchmark::DoNotOptimize(replicator_.replicateLayerTree(*window_, true)); }

  private:
    const std::shared_ptr<platform::Window> window_;
    platform::CairoGraphics graphics_;
    LayerReplicator replicator_;
    OptimizedImageRenderer renderer_;
};

template <class Bare>
void compare(benchmark::State& state, Capture& capture, const Bare& bare) {
    PairedTimes times;
    PairedTimes parts;
    for (auto _ : state) {
        times.turn([&capture] { benchmark::DoNotOptimize(capture()); },
                   [&bare] { benchmark::DoNotOptimize(bare()); });
        capture.mirror();  // not timed: or the first of the parts pays for the caches that Qt's picture has
                           // filled
        parts.turn([&capture] { capture.mirror(); }, [&capture] { capture.copy(); });
    }
    state.counters["capture_ms"] = 1e3 * times.oursSeconds();
    state.counters["mirror_ms"] = 1e3 * parts.oursSeconds();
    state.counters["copy_ms"] = 1e3 * parts.theirsSeconds();
    state.counters["qt_ms"] = 1e3 * times.theirsSeconds();
    state.counters["ratio"] = times.ratio();
    state.counters["clock_ratio"] = times.ratioByTheClock();
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

/// A window of items whose QML is `scene`.
void compareScene(benchmark::State& state, const char* scene) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(scene, {});
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

void items(benchmark::State& state) {
    compareScene(
        state,
        "import QtQuick\nimport QtQuick.Window\n"
        "Window { width: 390; height: 844; visible: true; Grid { columns: 10; Repeater { model: 150;"
        " Rectangle { width: 38; height: 50; radius: 6; color: 'lightgrey'; Text { text: 'Text' } } } } }");
}
BENCHMARK(items)->Unit(benchmark::kMillisecond);

/// One of each: few objects of many classes, most of them QML's.
void controls(benchmark::State& state) {
    compareScene(state,
                 "import QtQuick\nimport QtQuick.Window\nimport QtQuick.Controls.Basic\n"
                 "Window { width: 390; height: 844; visible: true; Flow { anchors.fill: parent;"
                 " Button { text: 'a' } CheckBox { text: 'a' } RadioButton { text: 'a' } Switch { text: 'a' }"
                 " ToolButton { text: 'a' } RoundButton { text: 'a' } DelayButton { text: 'a' }"
                 " TabBar { TabButton { text: 'a' } } ToolBar { Label { text: 'a' } }"
                 " ComboBox { model: ['a'] } SpinBox {} Slider {} RangeSlider {} Dial {} Tumbler { model: 5 }"
                 " TextField { text: 'a' } TextArea { text: 'a' } ProgressBar {} BusyIndicator {}"
                 " PageIndicator { count: 3 } ScrollBar { size: 0.5 } ItemDelegate { text: 'a' }"
                 " CheckDelegate { text: 'a' } RadioDelegate { text: 'a' } SwitchDelegate { text: 'a' }"
                 " SwipeDelegate { text: 'a' } MenuItem { text: 'a' } GroupBox { title: 'a' } Frame {}"
                 " Page { title: 'a' } Pane {} StackView {} SwipeView {} ScrollView {} MenuSeparator {}"
                 " ToolSeparator {} Image {} BorderImage {} } }");
}
BENCHMARK(controls)->Unit(benchmark::kMillisecond);

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
