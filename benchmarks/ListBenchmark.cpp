// How long the list of sessions takes when there are very many.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/ServedReceiver.hpp"
#include "tests/receiver/support/TemporaryDirectory.hpp"
#include "tests/receiver/support/Timeline.hpp"
#include "tools/receiver/sqlite/SqliteStore.hpp"

namespace mireth::benchmarks {
namespace {

using receiver::test::chunkOf;
using receiver::test::metadataEvent;
using receiver::test::screenEvent;
using receiver::test::signalEvent;
using receiver::test::tapEvent;
using Clock = std::chrono::steady_clock;

constexpr int allSessions = 100'000;
constexpr std::int64_t firstMillis = 1'700'000'000'000;
constexpr std::int64_t apartMillis = 60'000;

template <class T>
T need(receiver::Stored<T> stored) {
    if (!stored) {
        throw std::runtime_error(stored.error());
    }
    return std::move(*stored);
}

/// A dozen apps' worth of screens; every tenth session ends in an error, and every error has a number of its
/// own.
std::vector<receiver::TimelineEvent> timelineOf(int session) {
    std::vector<receiver::TimelineEvent> events{metadataEvent("DeviceModel", "Phone"),
                                                metadataEvent("OperatingSystem", "iOS 17.4")};
    for (int i = 0; i < 4; ++i) {
        events.push_back(screenEvent("Screen " + std::to_string((session * 7 + i * 13) % 200)));
        events.push_back(tapEvent());
    }
    if (session % 7 == 0) {
        events.push_back(signalEvent("RageTap"));
    }
    if (session % 10 == 0) {
        events.push_back(signalEvent("ErrorTap", "Order " + std::to_string(session) + " was declined"));
    }
    return events;
}

void addSession(receiver::SqliteStore& store, int number) {
    const auto id = "session-" + std::to_string(number);
    const auto start = firstMillis + apartMillis * number;
    need(store.addSession({.id = id,
                           .brandId = "b1",
                           .brandDc = "d",
                           .projectId = "project-" + std::to_string(number % 5),
                           .startMillis = start,
                           .closedMillis = {}}));
    const auto video = need(store.beginVideo());
    need(video->append("video"));
    const auto events = timelineOf(number);
    need(store.putChunk(id, chunkOf(0, events, start + 10'000), receiver::summarise(events), *video, {}));
}

/// Filled once, for all cases.
const ServedReceiver& filledReceiver() {
    static const receiver::test::TemporaryDirectory directory;
    static const auto served = [] {
        int names = 0;
        const auto store = need(receiver::SqliteStore::open(directory.file("data"),
                                                            [&] { return "v" + std::to_string(++names); }));
        for (int number = 0; number < allSessions; ++number) {
            addSession(*store, number);
        }
        return true;
    }();
    static const auto receiver = served ? std::make_unique<ServedReceiver>(directory.file("data")) : nullptr;
    return *receiver;
}

/// A page of the list, connection and all. The median is the time shown, `max_ms` the longest.
void list(benchmark::State& state, const std::string& query) {
    const auto& served = filledReceiver();
    std::vector<double> seconds;
    std::string answer;
    for (auto _ : state) {
        const auto start = Clock::now();
        answer = served.get("/api/sessions?" + query);
        seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
        state.SetIterationTime(seconds.back());
    }
    std::ranges::sort(seconds);
    state.counters["median_ms"] = 1e3 * seconds[seconds.size() / 2];
    state.counters["max_ms"] = 1e3 * seconds.back();
    state.counters["sessions"] = static_cast<double>(nlohmann::json::parse(answer).at("sessions").size());
}

std::string middle() {
    return std::to_string(firstMillis + apartMillis * (allSessions / 2));
}

#define MIRETH_LIST(name, query) \
    BENCHMARK_CAPTURE(list, name, query)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond)

MIRETH_LIST(newest, "limit=50");
MIRETH_LIST(fromTheMiddle, "limit=50&to=" + middle());
MIRETH_LIST(ofAProject, "project=project-3");
MIRETH_LIST(ofAProjectThatIsNotThere, "project=unknown");
MIRETH_LIST(withARageTap, "signal=rageTap");
MIRETH_LIST(withADeadTapThatNobodyMade, "signal=deadTap");
MIRETH_LIST(ofAScreen, "screen=Screen%207");
MIRETH_LIST(withACommonText, "text=declined");
MIRETH_LIST(withARareText, "text=order%205550");
MIRETH_LIST(withATextThatIsNowhere, "text=approved");
MIRETH_LIST(withAShortText, "text=er");
MIRETH_LIST(withAShortTextThatIsNowhere, "text=zq");
MIRETH_LIST(everythingTogether,
            "project=project-0&signal=errorTap&screen=Screen%2010&text=declined&to=" + middle());

}  // namespace
}  // namespace mireth::benchmarks
