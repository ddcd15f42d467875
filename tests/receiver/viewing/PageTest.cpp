// The page's files as they are served, and what every answer tells a browser.
#include <gtest/gtest.h>

#include "support/RunningReceiver.hpp"
#include "viewing/WebFile.hpp"

namespace mireth::receiver {
namespace {

using test::RunningReceiver;

TEST(Page, EveryFileIsServedWithItsTypeAndTag) {
    RunningReceiver receiver;
    ASSERT_FALSE(webFiles().empty());
    for (const auto& file : webFiles()) {
        const auto target = "/" + std::string(file.path);
        const auto response = receiver.get(target);
        EXPECT_EQ(response.status, 200) << target;
        EXPECT_EQ(response.body, file.bytes) << target;
        EXPECT_EQ(response.header("content-type").find("octet-stream"), std::string::npos) << target;
        EXPECT_EQ(response.header("cache-control"), "no-cache");
        const auto again = receiver.get(target, "If-None-Match: " + response.header("etag") + "\r\n");
        EXPECT_EQ(again.status, 304) << target;
        EXPECT_EQ(again.body, "") << target;
    }
}

TEST(Page, StandsAtTheRootAndAtEverySessionsAddress) {
    RunningReceiver receiver;
    const auto page = receiver.get("/");
    EXPECT_EQ(page.header("content-type"), "text/html; charset=utf-8");
    EXPECT_EQ(receiver.get("/sessions/any").body, page.body);
    EXPECT_EQ(receiver.get("/?a=b").body, page.body);
    EXPECT_EQ(receiver.get("/sessions/any/more").status, 404);
    EXPECT_EQ(receiver.get("/..%2findex.html").status, 404);
    EXPECT_EQ(receiver.get("/style.css/").status, 404);
    EXPECT_EQ(receiver.post("/", "", "X-Mireth-Request: 1\r\n").status, 405);
}

void expectPrecautions(const test::RawResponse& response, const std::string& what) {
    const auto policy = response.header("content-security-policy");
    EXPECT_TRUE(policy.starts_with("default-src 'none'; script-src 'self'; style-src 'self';")) << what;
    EXPECT_NE(policy.find("frame-ancestors 'none'"), std::string::npos) << what;
    EXPECT_EQ(policy.find("unsafe"), std::string::npos) << what;
    EXPECT_EQ(response.header("x-content-type-options"), "nosniff") << what;
    EXPECT_EQ(response.header("x-frame-options"), "DENY") << what;
    EXPECT_EQ(response.header("referrer-policy"), "no-referrer") << what;
    EXPECT_EQ(response.header("access-control-allow-origin"), "") << what;
}

TEST(Page, NoAnswerMayBeFramedSniffedOrRunFromElsewhere) {
    RunningReceiver receiver;
    for (const auto* const target : {"/", "/api/sessions", "/nothing", "/healthz", "/metrics",
                                     "/app-insights/v1/b/p/sessionReplayConfig"}) {
        expectPrecautions(receiver.get(target), target);
    }
    const auto unread = receiver.get("/" + std::string(3000, 'a'));
    EXPECT_EQ(unread.status, 431);
    expectPrecautions(unread, "431");
}

TEST(Page, NorMayTheAnswerOfAReceiverThatIsTooBusy) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connectionsPerAddress":1}})");
    const test::RawConnection taken(receiver.port());
    const auto surplus = test::RawConnection(receiver.port()).receive();
    EXPECT_EQ(surplus.status, 503);
    expectPrecautions(surplus, "503");
}

}  // namespace
}  // namespace mireth::receiver
