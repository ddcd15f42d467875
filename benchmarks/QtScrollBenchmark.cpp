// How many pictures a scrolling QML list loses to being recorded.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <memory>
#include <stdexcept>

#include "MirethVex/Headless/ServiceHttpClient.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "PublicSide/MirethSRCore.hpp"
#include "benchmarks/Display.hpp"
#include "benchmarks/SilentLog.hpp"
#include "tests/support/IngestionFake.hpp"

namespace mireth::benchmarks {
namespace {

/// Long enough for a whole chunk to be recorded, encoded and delivered.
constexpr int secondsATurn = 11;

constexpr const char* scene = R"(
import QtQuick
import QtQuick.Window

Window {
    width: 390; height: 844; visible: true
    ListView {
        anchors.fill: parent
        model: 10000
        spacing: 8
        delegate: Rectangle {
            width: 390; height: 72; radius: 10
            color: index % 2 ? "whitesmoke" : "lavender"
            border { width: 1; color: "silver" }
            Rectangle { x: 12; y: 12; width: 48; height: 48; radius: 24; color: "steelblue" }
            Text { x: 76; y: 12; text: "Order " + index; font.pixelSize: 18 }
            Text { x: 76; y: 40; text: "Two articles, delivered on Monday"; color: "dimgray" }
        }
        NumberAnimation on contentY { from: 0; to: 600000; duration: 1200000 }
    }
}
)";

/// The library on Qt's and Linux's answers; the service is in memory.
class Recording {
  public:
    explicit Recording(QQuickWindow& window) : platform_(options()), library_(log_.log, services()) {
        if (library_.initializeProject("brand", "project", platform_.windowOf(window)) !=
            InitializationResult::success) {
            throw std::runtime_error("the project could not be initialised");
        }
    }

    void start() {
        library_.startRecording(VexConfiguration(false, false))
            .then([this](const SessionStartResult& started) {
                isStarted_ = started.kind == SessionStartResult::Kind::success;
            });
    }

    /// Waits for the end.
    void stop() {
        if (!isStarted_) {
            throw std::runtime_error("the session did not start");
        }
        const auto stopped = library_.stopRecording();
        if (!platform_.runMainQueue([&stopped] { return stopped.isReady(); }, platform::Seconds(10))) {
            throw std::runtime_error("the session did not stop");
        }
    }

    std::size_t chunks() const { return service_.chunks.size(); }

  private:
    platform::LinuxPlatformOptions options() const {
        platform::LinuxPlatformOptions options;
        options.information.emplace().emplace("DEVICE_IDIOM", "phone");
        options.cachesDirectory = folder_.path().toStdString();
        return options;
    }

    platform::PlatformServices services() {
        auto services = platform_.services();
        services.http = std::make_shared<headless::ServiceHttpClient>(
            services.background, [this](const platform::HttpRequest& request) { return service_(request); });
        return services;
    }

    const QTemporaryDir folder_;
    SilentLog log_;
    test::IngestionFake service_;
    const qt::QtPlatform platform_;
    MirethSRCore library_;
    bool isStarted_ = false;
};

void scroll(benchmark::State& state) {
    Display display;
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(scene, {});
    const std::unique_ptr<QObject> root(component.create());
    auto* const window = qobject_cast<QQuickWindow*>(root.get());
    if (window == nullptr) {
        state.SkipWithError("the scene could not be made");
        return;
    }
    Recording recording(*window);
    Shown with;
    Shown without;
    const auto add = [](Shown& sum, const Shown& turn) {
        sum.intervals += turn.intervals;
        sum.lost += turn.lost;
        sum.busiest = std::max(sum.busiest, turn.busiest);
    };
    for (auto _ : state) {
        add(without, display.watch(*window, secondsATurn));
        recording.start();
        add(with, display.watch(*window, secondsATurn));
        recording.stop();
    }
    if (recording.chunks() < static_cast<std::size_t>(state.iterations())) {
        state.SkipWithError("not every chunk was delivered");
    }
    const auto perMinute = [](const Shown& shown) {
        return shown.lost * 60.0 * Display::perSecond / shown.intervals;
    };
    state.counters["lost_without"] = perMinute(without);
    state.counters["lost_with"] = perMinute(with);
    state.counters["lost_to_it"] = perMinute(with) - perMinute(without);
    state.counters["busiest_ms_without"] = 1e3 * without.busiest;
    state.counters["busiest_ms_with"] = 1e3 * with.busiest;
}
BENCHMARK(scroll)->Iterations(6)->UseRealTime()->Unit(benchmark::kSecond);

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
