#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/PostedLines.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The value of a query item in the latest request.
std::string latestQueryItem(SessionHost& host, const std::string& name) {
    const auto requests = host.phone().service()->requests();
    const std::string& url = requests.back().url;
    const auto begin = url.find(name + "=");
    if (begin == std::string::npos) {
        return "absent";
    }
    const auto valueBegin = begin + name.size() + 1;
    return url.substr(valueBegin, url.find('&', valueBegin) - valueBegin);
}

TEST(Initialization, EmptyBrandIdIsRefusedWithParamsRequired) {
    SessionHost host;
    EXPECT_EQ(host.core.initializeProject("", "p", host.window), InitializationResult::paramsRequired);
    EXPECT_THAT(host.errors(), ElementsAre("Can't initialize. Both brandId and projectId are required."));
    EXPECT_EQ(host.core.orchestrator(), nullptr);
}

TEST(Initialization, EmptyProjectIdIsRefusedWithParamsRequired) {
    SessionHost host;
    EXPECT_EQ(host.core.initializeProject("b", "", host.window), InitializationResult::paramsRequired);
    EXPECT_THAT(host.errors(), ElementsAre("Can't initialize. Both brandId and projectId are required."));
}

TEST(Initialization, SuccessIsLogged) {
    SessionHost host({}, {LogTag::lifecycle});
    EXPECT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Initialized project"));
    EXPECT_FALSE(host.core.hasActiveSession());
}

TEST(Initialization, WithoutAWindowTheKeyWindowIsUsed) {
    SessionHost host;
    EXPECT_EQ(host.core.initializeProject("b", "p", nullptr), InitializationResult::success);
}

TEST(Initialization, WithoutAnyWindowItIsRefused) {
    SessionHost host;
    host.phone().application().setKeyWindow(nullptr);
    EXPECT_EQ(host.core.initializeProject("b", "p", nullptr), InitializationResult::cannotGetKeyWindow);
    EXPECT_THAT(host.errors(),
                ElementsAre("Cannot get key window, pass it explicitly to the initializeProject method."));
}

TEST(Initialization, DuringASessionItIsRefusedAndTheGraphStays) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    const auto graph = host.core.orchestrator();
    (void)host.capture.take();
    EXPECT_EQ(host.core.initializeProject("", "", nullptr), InitializationResult::sessionAlreadyRunning);
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Can't initialize. A session is already running"));
    EXPECT_EQ(host.core.orchestrator(), graph);
}

TEST(Initialization, DuringAPausedSessionItIsRefused) {
    SessionHost host;
    host.startSession();
    ASSERT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    EXPECT_EQ(host.initialize(), InitializationResult::sessionAlreadyRunning);
}

TEST(Initialization, ASessionThatAServiceStartsMeanwhileIsNotReplaced) {
    std::function<void()> whileAsked;
    SessionHost host({}, {LogTag::lifecycle}, [&whileAsked](platform::PlatformServices& services) {
        services.makePathMonitor = [&whileAsked, make = services.makePathMonitor] {
            if (whileAsked) {
                whileAsked();
            }
            return make();
        };
    });
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto graph = host.core.orchestrator();
    std::optional<Async<SessionStartResult>> starting;
    whileAsked = [&] { starting = host.core.startRecording(VexConfiguration(false, false)); };
    (void)host.capture.take();
    EXPECT_EQ(host.initialize(), InitializationResult::sessionAlreadyRunning);
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Can't initialize. A session is already running"));
    EXPECT_EQ(host.core.orchestrator(), graph);
    EXPECT_EQ(host.await(starting.value()).kind, SessionStartResult::Kind::success);
    EXPECT_EQ(host.state(), "started");
}

TEST(Initialization, ARefusalForItsIdentifiersHasAlreadyChangedTheQueryItemsButNotTheGraph) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto graph = host.core.orchestrator();
    EXPECT_EQ(host.core.initializeProject("other", "", host.window), InitializationResult::paramsRequired);
    EXPECT_THAT(host.errors(), SizeIs(1));
    EXPECT_EQ(host.core.orchestrator(), graph);
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
    EXPECT_EQ(latestQueryItem(host, "M_BID"), "other");
    EXPECT_EQ(latestQueryItem(host, "M_ZoneID"), "");
    // The earlier graph still asks for its own project.
    EXPECT_THAT(host.phone().service()->requests().front().url, HasSubstr("/app-insights/v1/b1/p1/"));
}

TEST(Initialization, ARefusalForItsWindowHasAlreadyChangedTheQueryItems) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.phone().application().setKeyWindow(nullptr);
    EXPECT_EQ(host.core.initializeProject("b2", "p2", nullptr), InitializationResult::cannotGetKeyWindow);
    EXPECT_THAT(host.errors(), SizeIs(1));
    (void)host.start();
    EXPECT_EQ(latestQueryItem(host, "M_BID"), "b2");
}

TEST(Initialization, ARefusalForARunningSessionHasChangedNothing) {
    SessionHost host;
    host.startSession();
    EXPECT_EQ(host.core.initializeProject("b9", "p9", host.window),
              InitializationResult::sessionAlreadyRunning);
    (void)host.stop();
    EXPECT_EQ(latestQueryItem(host, "M_BID"), "b1");
    EXPECT_EQ(latestQueryItem(host, "M_ZoneID"), "p1");
}

/// What the remote log says of a line as long as its client has not fetched a configuration.
constexpr const char* droppedLine =
    R"(Unexpected error while posting log ["error": "Brand DC is not present."])";

TEST(Initialization, ARefusalForItsIdentifiersHasAlreadyConfiguredTheRemoteLog) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    EXPECT_EQ(host.core.initializeProject("", "p", host.window), InitializationResult::paramsRequired);
    host.phone().queue().drain();
    EXPECT_THAT(host.errors(),
                ElementsAre("Can't initialize. Both brandId and projectId are required.", droppedLine));
}

TEST(Initialization, ARefusalForItsWindowHasAlreadyConfiguredTheRemoteLog) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.phone().application().setKeyWindow(nullptr);
    EXPECT_EQ(host.core.initializeProject("b", "p", nullptr), InitializationResult::cannotGetKeyWindow);
    host.phone().queue().drain();
    EXPECT_THAT(host.errors(),
                ElementsAre("Cannot get key window, pass it explicitly to the initializeProject method.",
                            droppedLine));
}

TEST(Initialization, TheLineOfARefusalIsNotPostedAsTheProjectsBefore) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.startSession();
    ASSERT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    EXPECT_EQ(host.core.initializeProject("b9", "", host.window), InitializationResult::paramsRequired);
    host.phone().queue().drain();
    EXPECT_THAT(host.service.logBodies, IsEmpty());
    EXPECT_THAT(host.errors(),
                ElementsAre("Can't initialize. Both brandId and projectId are required.", droppedLine));
}

TEST(Initialization, ARefusalForARunningSessionLeavesTheRemoteLogToItsProject) {
    SessionHost host({}, {}, SessionHost::postEveryLine);
    host.startSession();
    EXPECT_EQ(host.core.initializeProject("b9", "p9", host.window),
              InitializationResult::sessionAlreadyRunning);
    host.core.log().error(LogTag::signal, "line");
    host.phone().queue().drain();
    ASSERT_THAT(host.service.logBodies, SizeIs(1));
    EXPECT_EQ(nlohmann::json::parse(test::postedText(host.service.logBodies[0]))["projectId"], "p1");
    EXPECT_THAT(host.errors(), ElementsAre("line"));
}

TEST(Initialization, AgainWithoutASessionBuildsAFreshGraph) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto first = host.core.orchestrator();
    EXPECT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_NE(host.core.orchestrator(), first);
}

TEST(Initialization, TheOrchestratorClassCanBeReplaced) {
    SessionHost host;
    int made = 0;
    MirethSRCore core(host.capture.log(), host.phone().services(),
                      [&made](MirethLog& log, Orchestrator::Collaborators parts, Executor executor,
                              CurrentTimeProvider clock) {
                          ++made;
                          return MirethSRCore::makeOrchestrator(log, std::move(parts), std::move(executor),
                                                                std::move(clock));
                      });
    EXPECT_EQ(core.initializeProject("b", "p", host.window), InitializationResult::success);
    EXPECT_EQ(made, 1);
}

/// What a project is made of, in the order of building: each from those before it. Its line is the last thing
/// that an object does while it is built, so its own parts stand before it.
const std::vector<std::string> longLived{"NetworkStateProvider",
                                         "MApiClient",
                                         "EventBuffer",
                                         "SessionDataDao",
                                         "ChunkPusher",
                                         "DeviceDetector",
                                         "FrameRecorder",
                                         "VideoChunkProcessor",
                                         "VideoChunkManager",
                                         "EventRecorder",
                                         "MirethGestureRecognizer",
                                         "ErrorTapSignalListener",
                                         "ViewAnalyzer",
                                         "DeadTapListener",
                                         "RageTapSignalListener",
                                         "TapInteractionListener",
                                         "TimelineEventDetector",
                                         "MetadataDetector",
                                         "WindowDimensionsDetector",
                                         "SessionRecorder",
                                         "AppLifecycleObserver",
                                         "RemoteSessionManager",
                                         "Orchestrator"};

std::vector<std::string> memoryUseLines(const std::string& status) {
    std::vector<std::string> lines;
    for (const auto& name : longLived) {
        lines.push_back(name + ": Succesfully " + status);
    }
    return lines;
}

TEST(Initialization, EveryLongLivedObjectWritesALineWhenItIsBuiltAndOneWhenItIsDestroyed) {
    SessionHost host({}, {LogTag::memoryUse});
    (void)host.capture.take();
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.phone().queue().drain();
    auto expected = memoryUseLines("initialized");
    EXPECT_THAT(host.texts(LogLevel::info), testing::ElementsAreArray(expected));
    // A fresh graph takes the old one's place, and the old one goes.
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.phone().queue().drain();
    const auto destroyed = memoryUseLines("deinitialized");
    expected.insert(expected.end(), destroyed.begin(), destroyed.end());
    EXPECT_THAT(host.texts(LogLevel::info), testing::UnorderedElementsAreArray(expected));
}

TEST(Initialization, TheEntryPointWritesItsMemoryUseLines) {
    test::LogCapture capture({LogTag::memoryUse});
    const SessionHost host;
    {
        const MirethSRCore core(capture.log(), host.phone().services());
    }
    const auto lines = capture.take();
    // The last thing built, and the first to go.
    const auto middle = lines.begin() + static_cast<std::ptrdiff_t>(lines.size() / 2);
    EXPECT_EQ(*std::prev(middle), test::infoLine(LogTag::memoryUse, "MirethSR: Succesfully initialized"));
    EXPECT_EQ(*middle, test::infoLine(LogTag::memoryUse, "MirethSR: Succesfully deinitialized"));
}

}  // namespace
}  // namespace mireth
