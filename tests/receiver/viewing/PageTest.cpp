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

TEST(Page, NoAnswerMayBeFramedSniffedOrRunFromElsewhere) {
    RunningReceiver receiver;
    for (const auto* const target : {"/", "/api/sessions", "/nothing", "/healthz", "/metrics",
                                     "/app-insights/v1/b/p/sessionReplayConfig"}) {
        const auto response = receiver.get(target);
        const auto policy = response.header("content-security-policy");
        EXPECT_TRUE(policy.starts_with("default-src 'none'; script-src 'self'; style-src 'self';")) << target;
        EXPECT_NE(policy.find("frame-ancestors 'none'"), std::string::npos) << target;
        EXPECT_EQ(policy.find("unsafe"), std::string::npos) << target;
        EXPECT_EQ(response.header("x-content-type-options"), "nosniff") << target;
        EXPECT_EQ(response.header("x-frame-options"), "DENY") << target;
        EXPECT_EQ(response.header("referrer-policy"), "no-referrer") << target;
        EXPECT_EQ(response.header("access-control-allow-origin"), "") << target;
    }
}

}  // namespace
}  // namespace mireth::receiver
