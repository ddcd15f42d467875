// What the receiver makes of a disk: acknowledged chunks beside bare synced files; and its memory while it
// does.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "benchmarks/ServedReceiver.hpp"
#include "tests/receiver/support/TemporaryDirectory.hpp"

namespace mireth::benchmarks {
namespace {

using receiver::test::chunkUpload;
using receiver::test::mp4;
using Clock = std::chrono::steady_clock;

constexpr int chunksOfATurn = 160;
// What 20 frames of a scrolling screen come to.
constexpr std::uint32_t bytesOfAFrame = 2400;

template <class Action>
double secondsOf(Action action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// A file for each chunk, written and synced one after the other.
void writeBare(const std::string& prefix, const std::string& bytes, int chunks) {
    for (int i = 0; i < chunks; ++i) {
        const auto path = prefix + std::to_string(i);
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        const bool written =
            file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
            ::fsync(file) == 0;
        ::close(file);
        if (!written) {
            throw std::system_error(errno, std::generic_category(), path);
        }
    }
}

void uploadSome(const ServedReceiver& served, const std::string& video, int chunks) {
    const auto session = served.createSession();
    for (int number = 0; number < chunks; ++number) {
        served.upload(chunkUpload(session, number, video));
    }
}

/// How many chunks a second come of it when so many threads share a turn's; `work` gets the thread and its
/// share.
template <class Work>
double chunksPerSecond(int threads, Work work) {
    return chunksOfATurn / secondsOf([&] {
               std::vector<std::thread> all;
               for (int i = 0; i < threads; ++i) {
                   all.emplace_back([&, i] { work(i, chunksOfATurn / threads); });
               }
               for (auto& thread : all) {
                   thread.join();
               }
           });
}

std::vector<double> ratios(const std::vector<double>& ours, const std::vector<double>& others) {
    std::vector<double> all;
    std::ranges::transform(ours, others, std::back_inserter(all), std::divides<>());
    return all;
}

/// Turn by turn, the same number of chunks each: a bare loop, as many bare loops at once as there are
/// clients, and the clients. The time shown is that of the clients.
void uploads(benchmark::State& state) {
    const receiver::test::TemporaryDirectory directory;
    const ServedReceiver served(directory.file("data"));
    const auto clients = static_cast<int>(state.range(0));
    const auto video = mp4({.bytesPerFrame = bytesOfAFrame});
    const auto bytes = video + receiver::test::timelineJson(0);
    std::vector<double> bare;
    std::vector<double> bareAtOnce;
    std::vector<double> ours;
    int turn = 0;
    const auto write = [&](int threads) {
        const auto prefix = directory.file(std::to_string(++turn) + "-");
        return chunksPerSecond(threads, [&](int thread, int chunks) {
            writeBare(prefix + std::to_string(thread) + "-", bytes, chunks);
        });
    };
    for (auto _ : state) {
        bare.push_back(write(1));
        bareAtOnce.push_back(write(clients));
        ours.push_back(chunksPerSecond(clients, [&](int, int chunks) { uploadSome(served, video, chunks); }));
        state.SetIterationTime(chunksOfATurn / ours.back());
    }
    state.counters["bare_per_s"] = medianOf(bare);
    state.counters["ratio"] = medianOf(ratios(ours, bare));
    state.counters["ratio_at_once"] = medianOf(ratios(ours, bareAtOnce));
    state.counters["chunks_per_s"] = medianOf(std::move(ours));
}
BENCHMARK(uploads)->ArgName("clients")->Arg(1)->Arg(8)->UseManualTime()->Iterations(5)->Unit(
    benchmark::kMillisecond);

/// The most memory a receiver of its own has had after uploads of this size.
void memory(benchmark::State& state) {
    const receiver::test::TemporaryDirectory directory;
    const ServedReceiver served(directory.file("data"));
    const auto session = served.createSession();
    const auto mebibytes = static_cast<std::uint32_t>(state.range(0));
    const auto upload = chunkUpload(session, 0, mp4({.bytesPerFrame = (mebibytes << 20U) / 20}));
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] { served.upload(upload); }));
    }
    state.counters["peak_MiB"] = static_cast<double>(served.peakMemory()) / (1U << 20U);
}
BENCHMARK(memory)->ArgName("MiB")->Arg(1)->Arg(16)->Arg(256)->UseManualTime()->Iterations(1)->Unit(
    benchmark::kMillisecond);

}  // namespace
}  // namespace mireth::benchmarks
