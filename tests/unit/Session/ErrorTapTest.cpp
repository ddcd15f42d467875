// Errors that the host logs and taps before them, through the whole library.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using nlohmann::ordered_json;
using test::SessionHost;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* refusal = "Can't record log error without starting the session first";

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

TEST_F(ErrorTapSession, AnErrorBeforeAnyTapYieldsNothing) {
    log();
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorTapSession, AnErrorSoonAfterATapIsOnTheTimelineWithTheTapsPlaceAndItsOwnTime) {
    tap();
    wait(100);
    log("no money");
    (void)host.stop();
    const auto& timeline = host.service.chunks.at(0).timeline;
    // After the start, the metadata, the window's dimensions and the tap.
    EXPECT_EQ(
        timeline[4].dump(),
        R"({"timestamp":1700000001100,"type":"SignalCaptured","eventDetails":{"signalId":"ErrorTap","target":)"
        R"({"xNormalizedTo1":0.5,"yNormalizedTo1":0.5,"xOriginalPx":585,"yOriginalPx":1266},)"
        R"("error":{"message":"no money"}},"chunkNumber":0})");
}

TEST_F(ErrorTapSession, ASecondErrorYieldsASecondOne) {
    tap();
    wait(100);
    log("one");
    wait(200);
    log("two");
    EXPECT_THAT(errorTaps(), ElementsAre("100 one 585", "300 two 585"));
}

TEST_F(ErrorTapSession, After499MillisecondsAnErrorPairsAndAfter500ItDoesNot) {
    tap();
    wait(499);
    log();
    wait(1);
    log();
    EXPECT_THAT(errorTaps(), ElementsAre("499 e 585"));
}

TEST_F(ErrorTapSession, WithoutAMessageItCarriesTheEmptyOne) {
    tap();
    host.core.logError(std::nullopt);
    EXPECT_THAT(errorTaps(), ElementsAre("0  585"));
}

TEST_F(ErrorTapSession, AfterAQuadrupleTapAnErrorPairsWithTheFirstTapWhileThatIsYoungEnough) {
    for (int count = 1; count <= 4; ++count) {
        tap({10.0 * count, 10}, count);
        wait(120);
    }
    log("480 after the first");
    wait(100);
    log("220 after the fourth");
    EXPECT_THAT(errorTaps(), ElementsAre("480 480 after the first 30"));
}

TEST_F(ErrorTapSession, AClockSetBackPairs) {
    tap();
    host.phone().clock().jump(std::chrono::hours(-1));
    wait(2000);
    log();
    EXPECT_THAT(errorTaps(), ElementsAre("-3598000 e 585"));
}

TEST_F(ErrorTapSession, AClockSetForwardDoesNotPair) {
    tap();
    host.phone().clock().jump(std::chrono::milliseconds(500));
    log();
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorTapSession, WhilePausedErrorsAreRefusedAndATapStillArms) {
    (void)host.core.pauseRecording();
    tap();
    // What the listeners find while paused is refused by the detector.
    EXPECT_THAT(host.errors(), ElementsAre("Could not record event - event callback is nil"));
    log("while paused");
    EXPECT_THAT(host.errors(), ElementsAre(refusal));
    (void)host.core.resumeRecording();
    log("after it");
    EXPECT_THAT(errorTaps(), ElementsAre("0 after it 585"));
}

// Errors logged on other threads: the moment of the call counts, for the time and for the tap.

TEST_F(ErrorTapSession, FromAnotherThreadTheMomentOfTheCallCounts) {
    tap();
    wait(499);
    logElsewhere();
    host.phone().clock().jump(std::chrono::hours(1));
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre("499 e 585"));
}

TEST_F(ErrorTapSession, OneLoggedBeforeTheTapAndStillWaitingDoesNotPairWithIt) {
    logElsewhere();
    tap();
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre());
}

TEST_F(ErrorTapSession, OneThatStillWaitsWhenTheNextTapComesPairsWithTheTapBefore) {
    tap({10, 10});
    logElsewhere();
    tap({20, 10});
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 30"));
}

TEST_F(ErrorTapSession, OneLoggedOnMainComesAfterThoseThatWait) {
    tap();
    logElsewhere("first");
    logElsewhere("second");
    log("third");
    EXPECT_THAT(errorTaps(), ElementsAre("0 first 585", "0 second 585", "0 third 585"));
}

TEST_F(ErrorTapSession, OneLoggedBeforeAPauseIsTaken) {
    tap();
    logElsewhere();
    (void)host.core.pauseRecording();
    EXPECT_THAT(host.errors(), IsEmpty());
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 585"));
}

TEST_F(ErrorTapSession, OneLoggedBeforeAResumeIsRefused) {
    tap();
    (void)host.core.pauseRecording();
    (void)host.capture.take();
    logElsewhere();
    (void)host.core.resumeRecording();
    EXPECT_THAT(host.errors(), ElementsAre(refusal));
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorTapSession, OneLoggedBeforeAStopIsTaken) {
    tap();
    logElsewhere();
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 585"));
}

TEST_F(ErrorTapSession, OneLoggedBetweenTwoSessionsIsRefused) {
    tap();
    (void)host.stop();
    (void)host.capture.take();
    logElsewhere();
    (void)host.start();
    EXPECT_THAT(host.errors(), ElementsAre(refusal));
}

TEST_F(ErrorTapSession, OneLoggedBeforeAResetIsTaken) {
    tap();
    logElsewhere();
    host.core.reset();
    handleWhatWaits();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorTapSession, OneLoggedAfterAResetIsRefusedWithItsLine) {
    host.core.reset();
    logElsewhere();
    handleWhatWaits();
    EXPECT_THAT(host.errors(), ElementsAre("Can't log error. Not initialized."));
}

TEST_F(ErrorTapSession, OneThatTheEndOfTheLibraryOvertakesIsDropped) {
    {
        MirethSRCore core(host.capture.log(), host.phone().services());
        std::thread([&core] { core.logError("e"); }).join();
    }
    handleWhatWaits();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorTapSession, ALogListenerMayResetTheLibraryWhileErrorsAreHandled) {
    host.capture.log().setAllowedTags({LogTag::signal});
    host.core.addLogListener([this](LogTag, LogLevel, const std::string& line) {
        if (line.find("one") != std::string::npos) {
            host.core.reset();
        }
    });
    tap();
    for (const char* message : {"one", "two", "three"}) {
        logElsewhere(message);
    }
    handleWhatWaits();
    EXPECT_EQ(host.state(), "none");
    EXPECT_THAT(host.errors(), IsEmpty()) << "they were logged before the reset";
}

TEST_F(ErrorTapSession, OfFourThreadsAtOnceNoErrorIsLost) {
    constexpr int threads = 4;
    constexpr int each = 250;
    tap();
    std::atomic<int> running{threads};
    std::vector<std::thread> hosts;
    for (int number = 0; number < threads; ++number) {
        hosts.emplace_back([this, number, &running] {
            for (int i = 0; i < each; ++i) {
                host.core.logError(std::to_string(number * each + i));
            }
            --running;
        });
    }
    while (running > 0) {
        handleWhatWaits();
    }
    for (auto& thread : hosts) {
        thread.join();
    }
    auto found = errorTaps();
    std::vector<std::string> expected;
    for (int i = 0; i < threads * each; ++i) {
        expected.push_back("0 " + std::to_string(i) + " 585");
    }
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
}

}  // namespace
}  // namespace mireth
