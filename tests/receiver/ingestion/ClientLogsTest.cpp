// Log lines over real sockets.
#include "ingestion/ClientLogs.hpp"

#include <gtest/gtest.h>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::RunningReceiver;
using Reports = std::vector<std::string>;

constexpr const char* log = "/WRTarrowEngine/Ajax.php?action=ClientLog&M_ZoneID=p1&M_BID=b1";
constexpr const char* oneProject = R"({"default":{},"projects":[{"brandId":"b1","projectId":"p1"}]})";

TEST(ClientLog, IsKeptWithItsSession) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    const auto response = receiver.post(
        log, "Message=%7B%22sessionId%22:%22" + id + "%22,%22logMessage%22:%22a&b=c%22%7D&LevelName=error");
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, R"({"status":"Success"})");
    const auto lines = receiver.contents(id).logLines;
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].message, R"({"sessionId":")" + id + R"(","logMessage":"a&b=c"})");
    EXPECT_EQ(lines[0].levelName, "error");
    EXPECT_EQ(lines[0].receivedMillis, RunningReceiver::wallMillis);
}

TEST(ClientLog, WithoutASessionIsKeptAside) {
    RunningReceiver receiver;
    for (const auto* const message : {"Failed%20to%20serialize%20log", "%7B%7D"}) {
        EXPECT_EQ(receiver.post(log, "LevelName=error&Message=" + std::string(message)).body,
                  R"({"status":"Success"})");
    }
    ASSERT_EQ(receiver.store().strayLogLines()->size(), 2U);
    EXPECT_EQ(receiver.store().strayLogLines()->at(0).message, "Failed to serialize log");
}

TEST(ClientLog, OfAnUnknownSessionOrAnotherProjectsIsRefused) {
    RunningReceiver receiver;
    const auto id = receiver.createSession("b1", "p2");
    for (const auto& session : {std::string("7"), std::string("%22x%22"), "%22" + id + "%22"}) {
        const auto response =
            receiver.post(log, "LevelName=error&Message=%7B%22sessionId%22:" + session + "%7D");
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, R"({"status":"Failure"})");
    }
    EXPECT_TRUE(receiver.store().strayLogLines()->empty());
    EXPECT_TRUE(receiver.contents(id).logLines.empty());
}

TEST(ClientLog, OfAnUnknownProjectIsRefused) {
    RunningReceiver receiver(R"({"projects":[{"brandId":"b1","projectId":"p2"}]})");
    EXPECT_EQ(receiver.post(log, "LevelName=error&Message=m").body, R"({"status":"Failure"})");
    EXPECT_EQ(receiver.post("/WRTarrowEngine/Ajax.php?action=ClientLog", "LevelName=error&Message=m").body,
              R"({"status":"Failure"})");
    EXPECT_TRUE(receiver.store().strayLogLines()->empty());
    EXPECT_EQ(receiver.takeReports(), (Reports{"a log line was refused: unknown project b1/p1",
                                               "a log line was refused: unknown project /"}));
}

TEST(ClientLog, TheBytesOfOneSessionsLinesAreLimited) {
    RunningReceiver receiver(R"({"default":{},"limits":{"logBytes":60}})");
    const auto id = receiver.createSession();
    const auto line = "Message=%7B%22sessionId%22:%22" + id + "%22%7D&LevelName=info";
    EXPECT_EQ(receiver.post(log, line).body, R"({"status":"Success"})");
    const auto second = receiver.post(log, line);
    EXPECT_EQ(second.status, 413);
    EXPECT_EQ(second.body, R"({"status":"Failure"})");
    EXPECT_EQ(receiver.contents(id).logLines.size(), 1U);
}

TEST(ClientLog, RefusesWhatIsNoLogLine) {
    RunningReceiver receiver;
    const auto malformed = receiver.post(log, "nothing");
    EXPECT_EQ(malformed.status, 400);
    EXPECT_EQ(malformed.body, R"({"status":"Failure"})");
    const auto large = receiver.post(log, "Message=" + std::string(200'000, 'a') + "&LevelName=info");
    EXPECT_EQ(large.status, 413);
    EXPECT_EQ(large.body, R"({"status":"Failure"})");
    EXPECT_EQ(receiver.post("/WRTarrowEngine/Ajax.php?action=Other", "Message=a&LevelName=info").status, 404);
    EXPECT_EQ(receiver.post("/WRTarrowEngine/Ajax.php", "Message=a&LevelName=info").status, 404);
    EXPECT_TRUE(receiver.store().strayLogLines()->empty());
}

TEST(ClientLog, LinesOfOneSessionAreLimited) {
    RunningReceiver receiver(R"({"default":{},"limits":{"logLines":2}})");
    const auto id = receiver.createSession();
    const auto line = "Message=%7B%22sessionId%22:%22" + id + "%22%7D&LevelName=info";
    EXPECT_EQ(receiver.post(log, line).body, R"({"status":"Success"})");
    EXPECT_EQ(receiver.post(log, line).body, R"({"status":"Success"})");
    const auto third = receiver.post(log, line);
    EXPECT_EQ(third.status, 413);
    EXPECT_EQ(third.body, R"({"status":"Failure"})");
    EXPECT_EQ(receiver.takeReports(),
              Reports{"a log line was refused: as many are kept as are allowed (session " + id + ")"});
    EXPECT_EQ(receiver.post(log, "Message=x&LevelName=info").body, R"({"status":"Success"})");
    EXPECT_EQ(receiver.contents(id).logLines.size(), 2U);
}

TEST(ClientLog, IsThrottledPerListedProjectAndForAllOthersTogether) {
    RunningReceiver receiver(oneProject);
    const auto bodyOf = [&](const std::string& projectId) {
        return receiver
            .post("/WRTarrowEngine/Ajax.php?action=ClientLog&M_BID=b1&M_ZoneID=" + projectId,
                  "Message=%7B%22sessionId%22:%22none%22%7D&LevelName=info")
            .body;
    };
    // Those that are refused for another reason count as well: looking for their session costs as much.
    for (int i = 0; i < 1000; ++i) {
        bodyOf("made-up-" + std::to_string(i));
    }
    EXPECT_EQ(receiver.takeReports().back(), "a log line was refused: its session is unknown");
    EXPECT_EQ(bodyOf("one-more"), R"({"status":"Failure"})");
    EXPECT_EQ(receiver.takeReports(), Reports{"a log line was refused: the project posts too fast"});
    bodyOf("p1");
    EXPECT_EQ(receiver.takeReports(), Reports{"a log line was refused: its session is unknown"});
    receiver.passSeconds(1);
    bodyOf("one-more");
    EXPECT_EQ(receiver.takeReports(), Reports{"a log line was refused: its session is unknown"});
}

TEST(ClientLog, WithoutASessionIsCountedAgainstItsProject) {
    RunningReceiver receiver(
        R"({"default":{},"projects":[{"brandId":"b1","projectId":"p1"}],"limits":{"logLines":1}})");
    const auto statusOf = [&](const std::string& projectId) {
        return receiver
            .post("/WRTarrowEngine/Ajax.php?action=ClientLog&M_BID=b1&M_ZoneID=" + projectId,
                  "Message=m&LevelName=info")
            .status;
    };
    EXPECT_EQ(statusOf("made-up"), 200);
    EXPECT_EQ(statusOf("another"), 413);
    EXPECT_EQ(statusOf("p1"), 200);
    EXPECT_EQ(statusOf("p1"), 413);
    EXPECT_EQ(receiver.takeReports(),
              (Reports{"a log line was refused: as many are kept as are allowed (project b1/another)",
                       "a log line was refused: as many are kept as are allowed (project b1/p1)"}));
}

}  // namespace
}  // namespace mireth::receiver
