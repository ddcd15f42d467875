// Sessions and configuration over real sockets.
#include "ingestion/Endpoints.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::RunningReceiver;
using Reports = std::vector<std::string>;

constexpr const char* create = "/mobile-sr-ingestion/v1/sessions/create";
constexpr const char* createBody =
    R"({"brandId":"b1","brandDc":"US_WEST","projectId":"p1","isTestSession":false})";
constexpr const char* refusedSession =
    R"({"status":"ERROR","sessionInfo":{"sessionId":"","sessionStartTime":"","creationDataCenter":"","isTestSession":false}})";

TEST(CreateSession, AnswersWithANewSession) {
    RunningReceiver receiver;
    const auto response = receiver.post(create, createBody);
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.header("content-type"), "application/json");
    const auto json = nlohmann::json::parse(response.body);
    EXPECT_EQ(json.at("status"), "SUCCESS");
    const auto& info = json.at("sessionInfo");
    const std::string id = info.at("sessionId");
    EXPECT_TRUE(std::regex_match(id, std::regex("[A-Za-z0-9._-]{1,128}")));
    EXPECT_EQ(info.at("sessionStartTime"), "2023-11-14T22:13:20.123Z");
    EXPECT_EQ(info.at("creationDataCenter"), "US_WEST");
    EXPECT_EQ(info.at("isTestSession"), false);
    const auto stored = receiver.contents(id).summary.session;
    EXPECT_EQ(stored.brandId, "b1");
    EXPECT_EQ(stored.brandDc, "US_WEST");
    EXPECT_EQ(stored.projectId, "p1");
    EXPECT_EQ(stored.startMillis, RunningReceiver::wallMillis);
    EXPECT_EQ(stored.closedMillis, std::nullopt);
    EXPECT_NE(receiver.createSession(), id);
    EXPECT_EQ(receiver.takeReports(), Reports{});
}

TEST(CreateSession, RefusesUnknownAndDisabledProjects) {
    RunningReceiver receiver(R"({"projects":[{"brandId":"b1","projectId":"off","srEnabled":"SR_DISABLED"},
                                             {"brandId":"b1","projectId":"web","srEnabled":"SR_ENABLED_FOR_WEB_ONLY"}]})");
    for (const auto* const project : {"p1", "off", "web"}) {
        const auto response = receiver.post(create, R"({"brandId":"b1","brandDc":"d","projectId":")" +
                                                        std::string(project) + R"(","isTestSession":true})");
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, refusedSession);
    }
    EXPECT_TRUE(receiver.store().list({})->sessions.empty());
    EXPECT_EQ(receiver.takeReports(),
              (Reports{"a session was refused: unknown project b1/p1",
                       "a session was refused: mobile sessions are off for project b1/off",
                       "a session was refused: mobile sessions are off for project b1/web"}));
}

TEST(CreateSession, RefusesBodiesOfAnotherShape) {
    RunningReceiver receiver;
    for (const auto* const body :
         {"", "{", "[]", "{}", R"({"brandId":"b1","brandDc":"d","projectId":"p1"})",
          R"({"brandId":1,"brandDc":"d","projectId":"p1","isTestSession":false})",
          R"({"brandId":"","brandDc":"d","projectId":"p1","isTestSession":false})",
          R"({"brandId":"b","brandDc":"d","projectId":"p1","isTestSession":0})",
          R"({"brandId":"b","brandDc":"d","projectId":"p1","isTestSession":false,"x":1})"}) {
        const auto response = receiver.post(create, body);
        EXPECT_EQ(response.status, 400) << body;
        EXPECT_EQ(response.body, refusedSession) << body;
    }
    EXPECT_EQ(receiver.post(create, std::string(20'000, ' ')).status, 413);
    EXPECT_TRUE(receiver.store().list({})->sessions.empty());
}

constexpr const char* oneProject = R"({"default":{},"projects":[{"brandId":"b1","projectId":"p1"}]})";

std::string createBodyOf(const std::string& projectId) {
    return R"({"brandId":"b1","brandDc":"d","projectId":")" + projectId + R"(","isTestSession":true})";
}

TEST(CreateSession, IsThrottledPerListedProjectAndForAllOthersTogether) {
    RunningReceiver receiver(oneProject);
    const auto statusOf = [&](const std::string& projectId) {
        return nlohmann::json::parse(receiver.post(create, createBodyOf(projectId)).body).at("status");
    };
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(statusOf("p1"), "SUCCESS");
    }
    const auto late = receiver.post(create, createBodyOf("p1"));
    EXPECT_EQ(late.status, 200);
    EXPECT_EQ(
        late.body,
        R"({"status":"THROTTLED","sessionInfo":{"sessionId":"","sessionStartTime":"","creationDataCenter":"","isTestSession":false}})");
    EXPECT_EQ(receiver.takeReports(),
              Reports{"a session was refused: the project creates sessions too fast"});
    EXPECT_EQ(receiver.store().stats()->sessions, 200);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(statusOf("made-up-" + std::to_string(i)), "SUCCESS");
    }
    EXPECT_EQ(statusOf("one-more"), "THROTTLED");
    receiver.passSeconds(1);
    EXPECT_EQ(statusOf("p1"), "SUCCESS");
}

TEST(CloseSession, ClosesOnceAndStaysClosed) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    for (int i = 0; i < 2; ++i) {
        const auto response = receiver.closeSession(id);
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, R"({"status":"SUCCESS"})");
    }
    EXPECT_EQ(receiver.contents(id).summary.session.closedMillis, RunningReceiver::wallMillis);
}

TEST(CloseSession, AnUnknownSessionOrAnotherProjectsIsAnErrorAnswer) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    for (const auto& response :
         {receiver.closeSession("unknown"), receiver.closeSession(id, "b2"),
          receiver.closeSession(id, "b1", "p2"), receiver.closeSession("..%2F" + id),
          receiver.closeSession("%00%0D%0A"), receiver.closeSession(std::string(1000, 'x'))}) {
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, R"({"status":"ERROR"})");
    }
    EXPECT_EQ(receiver.post("/mobile-sr-ingestion/v1/sessions/" + id + "/close-session", "{}").status, 400);
    EXPECT_EQ(receiver.contents(id).summary.session.closedMillis, std::nullopt);
}

TEST(ProjectConfiguration, IsTheProjects) {
    RunningReceiver receiver(R"({"default": {"samplingRate": 30, "srEnabled": null},
        "projects": [{"brandId":"b/1","projectId":"p 1","srEnabled":"SR_ENABLED_FOR_MOBILE_ONLY","samplingRate":12.5,
                      "dataCenter":"eu.west","customSignal":[{"name":"n","value":"v"}]}]})");
    const auto own = receiver.get("/app-insights/v1/b%2F1/p%201/sessionReplayConfig?M_BID=b");
    EXPECT_EQ(own.status, 200);
    EXPECT_EQ(own.body,
              R"({"srEnabled":"SR_ENABLED_FOR_MOBILE_ONLY","dataCenter":"eu.west","samplingRate":12.5,)"
              R"("customSignal":[{"name":"n","value":"v"}]})");
    const auto other = receiver.get("/app-insights/v1/b/p/sessionReplayConfig");
    EXPECT_EQ(other.body, R"({"dataCenter":"US_WEST","samplingRate":30.0,"customSignal":[]})");
}

TEST(ProjectConfiguration, OfAnUnknownProjectIsNotFound) {
    RunningReceiver receiver("{}");
    EXPECT_EQ(receiver.get("/app-insights/v1/b1/p1/sessionReplayConfig").status, 404);
    EXPECT_EQ(receiver.takeReports(), Reports{"a configuration was refused: unknown project b1/p1"});
}

TEST(Routing, UnknownPathsAndMethodsAreRefused) {
    RunningReceiver receiver;
    for (const auto* const path :
         {"/x", "/mobile-sr-ingestion/v1/sessions", "/mobile-sr-ingestion/v1/sessions/a/b",
          "/mobile-sr-ingestion/v1/sessions/create/", "/app-insights/v1/b/sessionReplayConfig"}) {
        EXPECT_EQ(receiver.get(path).status, 404) << path;
    }
    EXPECT_EQ(receiver.get("/%zz").status, 400);
    const auto wrongMethod = receiver.get(create);
    EXPECT_EQ(wrongMethod.status, 405);
    EXPECT_EQ(wrongMethod.header("allow"), "POST");
    for (const auto* const method : {"HEAD", "OPTIONS"}) {
        EXPECT_EQ(test::request(receiver.port(), method, create).status, 405) << method;
    }
    for (const auto* const method : {"PUT", "PATCH", "DELETE"}) {
        EXPECT_EQ(test::request(receiver.port(), method, create, "x").status, 405) << method;
    }
}

}  // namespace
}  // namespace mireth::receiver
