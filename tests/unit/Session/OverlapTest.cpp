// Calls and events that come while a start, a stop, an encode, an upload or a close is under way.
#include <gmock/gmock.h>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// Answers as `answer` does, but lets main run `action` once while the answer is on its way.
IngestionFake::Answer during(SessionHost& host, IngestionFake::Answer answer, std::function<void()> action) {
    return [&host, answer = std::move(answer), action = std::move(action),
            done = std::make_shared<bool>(false)](const platform::HttpRequest& request) {
        if (!std::exchange(*done, true)) {
            host.phone().queue().post(action);
        }
        return answer(request);
    };
}

// A start under way

TEST(DuringTheStart, TheBackgroundEndsNothingAndTheStartRunsToItsEnd) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    std::string stateThen;
    host.service.create = during(host, host.service.create, [&] {
        stateThen = host.state();
        host.phone().application().moveToBackground();
    });
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    EXPECT_EQ(stateThen, "starting");
    host.advance(1);
    EXPECT_EQ(host.state(), "started");
    EXPECT_EQ(host.service.closed, 0);
    // The next move ends the session as ever.
    host.phone().application().moveToBackground();
    host.advance(1);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 1);
}

TEST(DuringTheStart, TheBackgroundIsNoticedWhileTheSessionIsCreated) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    std::vector<std::string> lines;
    host.service.create = during(host, host.service.create, [&] {
        (void)host.capture.take();
        host.phone().application().moveToBackground();
        lines = host.texts(LogLevel::info);
    });
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    EXPECT_THAT(lines, ElementsAre("App moved to the background. Session is closed"));
}

TEST(DuringTheStart, TheBackgroundIsNotNoticedBeforeTheConfigurationIsThere) {
    SessionHost host({}, {LogTag::lifecycle});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.service.configuration =
        during(host, host.service.configuration, [&] { host.phone().application().moveToBackground(); });
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(1);
    EXPECT_EQ(host.state(), "started");
    EXPECT_THAT(host.texts(LogLevel::info), Not(Contains("App moved to the background. Session is closed")));
}

TEST(DuringTheStart, AnInitializationIsRefusedAndTheGraphStays) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto graph = host.core.orchestrator();
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    EXPECT_EQ(host.initialize(), InitializationResult::sessionAlreadyRunning);
    EXPECT_EQ(host.core.orchestrator(), graph);
    EXPECT_EQ(host.await(starting).kind, SessionStartResult::Kind::success);
    EXPECT_EQ(host.state(), "started");
}

// A stop under way

TEST(DuringTheStop, AResetLetsItRunToItsEnd) {
    SessionHost host;
    host.startSession();
    host.advance(2);
    const auto stopping = host.core.stopRecording();
    host.core.reset();
    EXPECT_EQ(host.state(), "none");
    EXPECT_EQ(host.await(stopping).kind, SessionCloseResult::Kind::success);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record", "close"));
    EXPECT_THAT(host.errors(), IsEmpty());
    host.startSession();
    EXPECT_EQ(host.state(), "started");
}

TEST(DuringTheStop, AResetWhileTheLastChunkIsUploadedLetsItRunToItsEnd) {
    SessionHost host;
    host.startSession();
    host.advance(2);
    host.service.record = during(host, host.service.record, [&] { host.core.reset(); });
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(host.state(), "none");
    EXPECT_EQ(host.service.closed, 1);
}

// An encode under way

/// Lets main run `action` when the encoder is about to open its file.
struct WatchedWriters final : platform::AssetWriterFactory {
    explicit WatchedWriters(std::shared_ptr<platform::FileManager> files) : writers(std::move(files)) {}
    std::unique_ptr<platform::AssetWriter> makeWriter(const std::filesystem::path& file,
                                                      platform::FileType type, std::int32_t timescale,
                                                      std::int64_t frameDuration) override {
        onWriter();
        return writers.makeWriter(file, type, timescale, frameDuration);
    }
    platform::OpenH264AssetWriterFactory writers;
    std::function<void()> onWriter = [] {};
};

TEST(DuringAnEncode, AResetDropsTheChunkAndTheSession) {
    std::shared_ptr<WatchedWriters> writers;
    SessionHost host([&writers](auto& options) {
        writers = std::make_shared<WatchedWriters>(options.files);
        options.assetWriters = writers;
    });
    host.startSession();
    bool wasEncoding = false;
    writers->onWriter = [&] {
        host.phone().queue().post([&] {
            wasEncoding = !std::filesystem::exists(host.storeDirectory() / "S1-0.mp4");
            host.core.reset();
        });
    };
    host.advance(30);
    EXPECT_TRUE(wasEncoding);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create"));
    EXPECT_THAT(host.errors(), IsEmpty());
    writers->onWriter = [] {};
    host.startSession();
    host.advance(10);
    EXPECT_EQ(host.service.chunks.size(), 1U);
}

// An upload under way

TEST(DuringAnUpload, AResetLetsItEndAndStartsNoOther) {
    SessionHost host;
    host.startSession();
    host.service.record = during(host, host.service.record, [&] { host.core.reset(); });
    host.advance(30);
    EXPECT_EQ(host.state(), "none");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record"));
    EXPECT_THAT(host.errors(), IsEmpty());
}

TEST(DuringAnUpload, AResetMakesItsRefusalALineAndNothingMore) {
    SessionHost host;
    host.startSession();
    host.service.record = during(
        host, [](const auto&) { return IngestionFake::ok(R"({"status":"ERROR"})"); },
        [&] { host.core.reset(); });
    host.advance(10);
    EXPECT_THAT(host.errors(), ElementsAre("Single chunk skipped: Error during chunk push. "
                                           "[\"statusCode\": \"ERROR\", \"transactionId\": \"T\"]"));
    EXPECT_EQ(host.service.closed, 0);
    // A new session is none of that upload's business.
    host.service.record = [](const auto&) { return IngestionFake::ok(R"({"status":"SUCCESS"})"); };
    host.startSession();
    host.advance(10);
    EXPECT_EQ(host.state(), "started");
}

// A close under way: this session is over, whatever the service has yet to say.

TEST(DuringTheRemoteClose, AnotherSessionMayStart) {
    SessionHost host;
    host.startSession();
    std::optional<Async<SessionStartResult>> second;
    host.service.close = during(host, host.service.close,
                                [&] { second = host.core.startRecording(VexConfiguration(false, false)); });
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(host.await(second.value()),
              SessionStartResult::success("Successfully created session: S2", {"S2", 1700000000000}));
    EXPECT_EQ(host.state(), "started");
    host.advance(10);
    EXPECT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(host.service.closed, 1);
}

TEST(DuringTheRemoteClose, AStopAnswersNotStarted) {
    SessionHost host;
    host.startSession();
    std::optional<Async<SessionCloseResult>> second;
    host.service.close = during(host, host.service.close, [&] { second = host.core.stopRecording(); });
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(host.await(second.value()).kind, SessionCloseResult::Kind::notStarted);
    EXPECT_EQ(host.service.closed, 1);
}

TEST(DuringTheRemoteClose, TheStopOfAnotherSessionClosesThatOne) {
    SessionHost host;
    host.startSession();
    std::optional<Async<SessionCloseResult>> second;
    const auto close = host.service.close;
    host.service.close = during(host, close, [&] {
        host.core.startRecording(VexConfiguration(false, false)).then([&](const SessionStartResult& started) {
            EXPECT_EQ(started.kind, SessionStartResult::Kind::success);
            second = host.core.stopRecording();
        });
    });
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    host.advance(1);
    ASSERT_TRUE(second);
    EXPECT_EQ(host.await(*second).kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(host.service.closed, 2);
}

TEST(DuringTheRemoteClose, AnInitializationBuildsAFreshGraph) {
    SessionHost host;
    host.startSession();
    const auto graph = host.core.orchestrator();
    std::optional<InitializationResult> again;
    host.service.close = during(host, host.service.close, [&] { again = host.initialize(); });
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(again, InitializationResult::success);
    EXPECT_NE(host.core.orchestrator(), graph);
    EXPECT_EQ(host.service.closed, 1);
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
}

}  // namespace
}  // namespace mireth
