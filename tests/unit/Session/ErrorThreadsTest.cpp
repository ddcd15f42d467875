// Errors logged on other threads: the moment of the call counts, for the time and for the tap.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "ErrorTaps.hpp"

namespace mireth {
namespace {

using test::errorRefusal;
using testing::ElementsAre;
using testing::IsEmpty;

/// Errors of other threads wait for main without a turn of its queue while main is to look again anyway.
struct ErrorThreads : test::ErrorTapSession {
    /// From now on errors wait, for 5 ms, unless something has main take them out. It takes an error for it.
    void haveMainLookLater() {
        logElsewhere("first");
        handleWhatWaits();
    }
};

TEST_F(ErrorThreads, FromAnotherThreadTheMomentOfTheCallCounts) {
    tap();
    wait(499);
    logElsewhere();
    host.phone().clock().jump(std::chrono::hours(1));
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre("499 e 585"));
}

TEST_F(ErrorThreads, OneLoggedBeforeTheTapAndStillWaitingDoesNotPairWithIt) {
    logElsewhere();
    tap();
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre());
}

TEST_F(ErrorThreads, OneThatStillWaitsWhenTheNextTapComesPairsWithTheTapBefore) {
    tap({10, 10});
    logElsewhere();
    tap({20, 10});
    handleWhatWaits();
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 30"));
}

TEST_F(ErrorThreads, OneLoggedOnMainComesAfterThoseThatWait) {
    tap();
    logElsewhere("first");
    logElsewhere("second");
    log("third");
    EXPECT_THAT(errorTaps(), ElementsAre("0 first 585", "0 second 585", "0 third 585"));
}

TEST_F(ErrorThreads, OneLoggedBeforeAPauseIsTaken) {
    tap();
    logElsewhere();
    (void)host.core.pauseRecording();
    EXPECT_THAT(host.errors(), IsEmpty());
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 585"));
}

TEST_F(ErrorThreads, OneLoggedBeforeAResumeIsRefused) {
    tap();
    (void)host.core.pauseRecording();
    (void)host.capture.take();
    logElsewhere();
    (void)host.core.resumeRecording();
    EXPECT_THAT(host.errors(), ElementsAre(errorRefusal));
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorThreads, OneLoggedBeforeAStopIsTaken) {
    tap();
    logElsewhere();
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 585"));
}

TEST_F(ErrorThreads, OneLoggedBeforeTheBackgroundEndsTheSessionIsTaken) {
    tap();
    haveMainLookLater();
    logElsewhere();
    host.phone().application().moveToBackground();
    handleWhatWaits();
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.errors(), IsEmpty());
    EXPECT_THAT(errorTaps(), ElementsAre("0 first 585", "0 e 585"));
}

TEST_F(ErrorThreads, OneLoggedBeforeARefusedUploadEndsTheSessionIsTaken) {
    wait(8998);
    haveMainLookLater();
    host.service.record = [this](const auto&) {
        EXPECT_FALSE(host.phone().queue().isCurrent());
        log();
        return test::IngestionFake::ok(R"({"status":"ERROR"})");
    };
    wait(50);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.errors(), ElementsAre("Single chunk skipped: Error during chunk push. "
                                           "[\"statusCode\": \"ERROR\", \"transactionId\": \"T\"]"));
}

TEST_F(ErrorThreads, OneLoggedBeforeAnInitializationFindsWhatWasThereBefore) {
    host.core.reset();
    logElsewhere();
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_THAT(host.errors(), ElementsAre("Can't log error. Not initialized."));
    handleWhatWaits();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorThreads, OneLoggedBetweenTwoSessionsIsRefused) {
    tap();
    (void)host.stop();
    (void)host.capture.take();
    logElsewhere();
    (void)host.start();
    EXPECT_THAT(host.errors(), ElementsAre(errorRefusal));
}

struct ErrorsWhileASessionStarts : ErrorThreads {
    void SetUp() override {
        ErrorThreads::SetUp();
        (void)host.stop();
        haveMainLookLater();
        (void)host.capture.take();
        host.service.create = [this, create = host.service.create](const auto& request) {
            EXPECT_EQ(host.state(), "starting");
            EXPECT_FALSE(host.phone().queue().isCurrent());
            log();
            return create(request);
        };
    }
};

TEST_F(ErrorsWhileASessionStarts, AreRefusedThoughMainComesToThemLater) {
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    EXPECT_THAT(host.errors(), ElementsAre(errorRefusal));
    wait(5);
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorsWhileASessionStarts, MayHaveTheHostResetTheLibraryWhenTheyAreRefused) {
    host.core.addLogListener([this](LogTag, LogLevel, const std::string& line) {
        if (line == errorRefusal) {
            host.core.reset();
        }
    });
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::fail);
    EXPECT_EQ(host.state(), "none");
    EXPECT_THAT(host.errorMessages(), ElementsAre(errorRefusal, "Failed to start recording."));
}

TEST_F(ErrorThreads, OneLoggedBeforeAResetIsTaken) {
    tap();
    logElsewhere();
    host.core.reset();
    handleWhatWaits();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorThreads, OneLoggedAfterAResetIsRefusedWithItsLine) {
    host.core.reset();
    logElsewhere();
    handleWhatWaits();
    EXPECT_THAT(host.errors(), ElementsAre("Can't log error. Not initialized."));
}

TEST_F(ErrorThreads, OneThatTheEndOfTheLibraryOvertakesIsDropped) {
    {
        MirethSRCore core(host.capture.log(), host.phone().services());
        std::thread([&core] { core.logError("e"); }).join();
    }
    handleWhatWaits();
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST_F(ErrorThreads, ALogListenerMayResetTheLibraryWhileErrorsAreHandled) {
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

TEST_F(ErrorThreads, OfFourThreadsAtOnceNoErrorIsLost) {
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
