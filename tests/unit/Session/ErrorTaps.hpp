// A session whose user taps and meets errors.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "support/SessionHost.hpp"

namespace mireth::test {

/// The line that refuses an error while no session runs, or one that is paused.
inline constexpr const char* errorRefusal = "Can't record log error without starting the session first";

/// A session that has seen its first frame, 1 s after it was started. All times are in milliseconds.
struct ErrorTapSession : testing::Test {
    static constexpr std::int64_t begin = 1'700'000'001'000;

    SessionHost host;
    std::uint64_t lastIdentity = 0;

    void SetUp() override {
        host.startSession();
        host.advance(1);
        (void)host.capture.take();
    }

    void tap(Point at = {195, 422}, int tapCount = 1) {
        platform::Touch touch;
        touch.identity = ++lastIdentity;
        touch.locationInWindow = at;
        touch.tapCount = tapCount;
        touch.timestamp = host.phone().clock().uptimeSeconds();
        touch.window = host.window;
        for (const auto phase : {platform::TouchPhase::began, platform::TouchPhase::ended}) {
            touch.phase = phase;
            host.window->sendEvent({touch.timestamp, {touch}});
        }
    }
    void wait(int millis) { host.advance(millis / 1000.0); }
    void log(const char* message = "e") { host.core.logError(message); }
    void logElsewhere(const char* message = "e") {
        std::thread([this, message] { host.core.logError(message); }).join();
    }
    void handleWhatWaits() const { host.phone().queue().drain(); }

    /// The error taps of the session, which this ends: each as the time since `begin`, the message and the
    /// place across.
    std::vector<std::string> errorTaps() {
        (void)host.stop();
        std::vector<std::string> result;
        for (const auto& event : host.service.chunks.at(0).timeline) {
            if (event["type"] == "SignalCaptured" && event["eventDetails"]["signalId"] == "ErrorTap") {
                const auto& details = event["eventDetails"];
                result.push_back(std::to_string(event["timestamp"].get<std::int64_t>() - begin) + " " +
                                 details["error"]["message"].get<std::string>() + " " +
                                 std::to_string(details["target"]["xOriginalPx"].get<int>()));
            }
        }
        return result;
    }
};

}  // namespace mireth::test
