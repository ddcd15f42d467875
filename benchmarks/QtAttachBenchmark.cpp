// What attaching to a program costs it: Qt's `qml` runtime with a file of one item, with and without.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <stdexcept>
#include <vector>

#include "benchmarks/PairedTimes.hpp"
#include "benchmarks/ServedReceiver.hpp"

namespace mireth::benchmarks {
namespace {

/// It says when its first picture is there.
constexpr const char* item = R"(
import QtQuick

Rectangle {
    id: item
    width: 390; height: 844; color: "steelblue"
    Connections {
        target: item.Window.window
        function onFrameSwapped() { console.log("shown"); enabled = false }
    }
}
)";

void write(const QString& path, const QByteArray& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw std::runtime_error("the file could not be written: " + path.toStdString());
    }
}

/// The program, and the service that it is recorded for.
class Programs {
  public:
    Programs() : served_(path("data").toStdString()) {
        write(path("item.qml"), item);
        write(path("info.json"), R"({"DEVICE_IDIOM": "phone"})");
    }

    QStringList alone() const {
        return {QLibraryInfo::path(QLibraryInfo::BinariesPath) + "/qml", path("item.qml")};
    }

    QStringList attached() const {
        const QStringList attach{MIRETH_ATTACH_PROGRAM, "--sr-endpoint",
                                 QString::fromStdString(served_.origin()), "--info", path("info.json")};
        return attach + alone();
    }

  private:
    QString path(const char* name) const { return folder_.filePath(QString::fromLatin1(name)); }

    const QTemporaryDir folder_;
    const ServedReceiver served_;
};

/// A running program, killed with the object.
class Running {
  public:
    /// Waits for the first picture.
    explicit Running(QStringList command) {
        const QString program = command.takeFirst();
        const double start = clockSeconds();
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(program, command);
        while (!said_.contains("shown")) {
            if (!process_.waitForReadyRead(20'000)) {
                throw std::runtime_error("no picture: " + said_.toStdString());
            }
            said_ += process_.readAll();
        }
        secondsToStart = clockSeconds() - start;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        process_.kill();
        process_.waitForFinished();
    }

    /// Of the process and all its threads, up to now.
    double processorSeconds() const {
        clockid_t clock{};
        timespec now{};
        ::clock_getcpuclockid(static_cast<pid_t>(process_.processId()), &clock);
        ::clock_gettime(clock, &now);
        return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
    }

    /// Resident now, in MiB.
    double memory() const {
        QFile status(QString("/proc/%1/status").arg(process_.processId()));
        if (!status.open(QIODevice::ReadOnly)) {
            throw std::runtime_error("the program is gone");
        }
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:")) {
                return line.simplified().split(' ').at(1).toDouble() / 1024;
            }
        }
        return 0;
    }

    double secondsToStart = 0;

  private:
    QProcess process_;
    QByteArray said_;
};

/// From the moment the program is run to its first picture, turn by turn. By the clock, since the library
/// does on other threads what it can; and what the process has computed until then.
void start(benchmark::State& state) {
    const Programs programs;
    std::vector<double> alone;
    std::vector<double> added;
    std::vector<double> computed;
    for (auto _ : state) {
        const Running bare(programs.alone());
        const double bareComputed = bare.processorSeconds();
        const Running attached(programs.attached());
        computed.push_back(attached.processorSeconds() - bareComputed);
        alone.push_back(bare.secondsToStart);
        added.push_back(attached.secondsToStart - bare.secondsToStart);
    }
    state.counters["alone_ms"] = 1e3 * medianOf(alone);
    state.counters["added_ms"] = 1e3 * medianOf(added);
    state.counters["added_cpu_ms"] = 1e3 * medianOf(computed);
}
BENCHMARK(start)->Iterations(40)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Some time after the first picture: after a few seconds, and after a whole chunk was delivered.
void memory(benchmark::State& state) {
    const Programs programs;
    std::vector<double> alone;
    std::vector<double> added;
    for (auto _ : state) {
        const Running bare(programs.alone());
        const Running attached(programs.attached());
        QThread::sleep(static_cast<unsigned long>(state.range(0)));
        alone.push_back(bare.memory());
        added.push_back(attached.memory() - bare.memory());
    }
    state.counters["alone_MiB"] = medianOf(alone);
    state.counters["added_MiB"] = medianOf(added);
}
BENCHMARK(memory)->ArgName("seconds")->Arg(3)->Arg(12)->Iterations(3)->UseRealTime()->Unit(
    benchmark::kSecond);

}  // namespace
}  // namespace mireth::benchmarks

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    // Not to the journal.
    qputenv("QT_FORCE_STDERR_LOGGING", "1");
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
