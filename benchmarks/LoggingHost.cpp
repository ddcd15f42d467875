#include "benchmarks/LoggingHost.hpp"

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "PublicSide/MirethSRAccess.hpp"
#include "PublicSide/MirethSRCore.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "platforms/linux/media/OpenH264AssetWriterFactory.hpp"
#include "platforms/linux/system/SystemClock.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"
#include "tests/support/MemoryFileManager.hpp"

namespace mireth::benchmarks {

namespace {

using SteadyClock = std::chrono::steady_clock;

headless::HeadlessOptions options() {
    headless::HeadlessOptions result;
    // In real time, with background work on threads of its own.
    result.pace = 1;
    result.threads = std::make_shared<platform::ThreadPoolExecutor>();
    result.files = std::make_shared<tests::MemoryFileManager>();
    result.graphics = std::make_shared<platform::CairoGraphics>();
    result.assetWriters = std::make_shared<platform::OpenH264AssetWriterFactory>(result.files);
    return result;
}

}  // namespace

LoggingHost::LoggingHost()
    : phone_(options()),
      library_(MirethSRAccess::make(std::make_unique<MirethSRCore>(log_.log, services()))) {
    MirethSRAccess::core(library_).askServices();
    phone_.service()->setService([this](const platform::HttpRequest& request) { return service_(request); });
}

platform::PlatformServices LoggingHost::services() const {
    platform::PlatformServices services = phone_.services();
    services.mainQueue = queue_;
    services.clock = std::make_shared<platform::SystemClock>();
    return services;
}

LoggingHost::Outcome LoggingHost::run(std::chrono::seconds duration, std::chrono::microseconds interval) {
    // Before the first frame a tap has no place in the video.
    constexpr platform::Seconds untilTheFirstFrame{0.7};
    // Often enough for every error to have one within its half second.
    constexpr platform::Seconds betweenTaps{0.1};

    Outcome outcome;
    std::thread logger;
    std::unique_ptr<platform::Timer> taps;
    const auto stop = [&] {
        logger.join();
        taps.reset();
        library_.stopRecording().then([this](const SessionCloseResult&) { queue_->stop(); });
    };
    const auto begin = [&] {
        tap();
        taps = queue_->scheduleRepeating(betweenTaps, [this] { tap(); });
        logger = std::thread([&] {
            outcome.waits = logErrors(duration, interval);
            queue_->post(stop);
        });
    };
    library_.initializeProject("brand", "project", window_);
    library_.startRecording(VexConfiguration(false, false)).then([&](const SessionStartResult& started) {
        if (started.kind != SessionStartResult::Kind::success) {
            throw std::runtime_error("the session did not start");
        }
        queue_->postAfter(untilTheFirstFrame, begin);
    });
    queue_->run();

    std::ranges::sort(outcome.waits);
    outcome.paired = errorTaps();
    return outcome;
}

void LoggingHost::tap() {
    platform::Touch touch;
    touch.identity = ++lastTouch_;
    touch.locationInWindow = {195, 422};
    touch.window = window_;
    for (const auto phase : {platform::TouchPhase::began, platform::TouchPhase::ended}) {
        touch.phase = phase;
        window_->sendEvent({touch.timestamp, {touch}});
    }
}

std::vector<double> LoggingHost::logErrors(std::chrono::seconds duration,
                                           std::chrono::microseconds interval) {
    std::vector<double> waits;
    waits.reserve(static_cast<std::size_t>(duration / interval) + 1);
    const auto start = SteadyClock::now();
    for (auto due = start; due < start + duration; due += interval) {
        std::this_thread::sleep_until(due);
        std::string message = "The payment was declined";
        const auto before = SteadyClock::now();
        library_.logError(std::move(message));
        waits.push_back(std::chrono::duration<double>(SteadyClock::now() - before).count());
    }
    return waits;
}

std::size_t LoggingHost::errorTaps() const {
    std::size_t count = 0;
    for (const auto& chunk : service_.chunks) {
        count += static_cast<std::size_t>(std::ranges::count_if(chunk.timeline, [](const auto& event) {
            return event["type"] == "SignalCaptured" && event["eventDetails"]["signalId"] == "ErrorTap";
        }));
    }
    return count;
}

double LoggingHost::Outcome::waitAt(double part) const {
    const auto last = static_cast<double>(waits.size() - 1);
    return waits.at(static_cast<std::size_t>(part * last));
}

}  // namespace mireth::benchmarks
