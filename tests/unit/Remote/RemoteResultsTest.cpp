#include "PrivateSide/Orchestrator/RemoteResults.hpp"

#include <gtest/gtest.h>

namespace mireth {
namespace {

using Kind = RemoteCreateResult::Kind;
using StartKind = SessionStartResult::Kind;

TEST(RemoteCreateResult, SuccessBecomesTheStartedSession) {
    EXPECT_EQ(RemoteCreateResult::success({"S1", 5}).asSessionStartResult(),
              SessionStartResult::success("Successfully created session: S1", {"S1", 5}));
}

TEST(RemoteCreateResult, RefusalsKeepTheirKind) {
    EXPECT_EQ(RemoteCreateResult::of(Kind::alreadyExists).asSessionStartResult().kind,
              StartKind::alreadyStarted);
    EXPECT_EQ(RemoteCreateResult::of(Kind::samplingRejected).asSessionStartResult().kind,
              StartKind::samplingRejected);
    EXPECT_EQ(RemoteCreateResult::of(Kind::sessionReplayNotEnabled).asSessionStartResult().kind,
              StartKind::sessionReplayNotEnabled);
}

TEST(RemoteCreateResult, AnAnswerThatIsNoSuccessFailsWithItsStatus) {
    EXPECT_EQ(RemoteCreateResult::errorResponse("THROTTLED").asSessionStartResult(),
              SessionStartResult::fail("Request to API failed. Response status: THROTTLED"));
}

TEST(RemoteCreateResult, AFailureKeepsItsReason) {
    EXPECT_EQ(RemoteCreateResult::fail("Network error.").asSessionStartResult(),
              SessionStartResult::fail("Network error."));
}

TEST(RemoteCreateResult, AStartTimeThatCannotBeReadFailsWithoutAReason) {
    EXPECT_EQ(RemoteCreateResult::of(Kind::failParseDate).asSessionStartResult(),
              SessionStartResult::fail(std::nullopt));
}

TEST(RemoteCreateResult, InWordsForTheLog) {
    EXPECT_EQ(description(RemoteCreateResult::success({"S1", 5})),
              "success(sessionId: S1, sessionStartTimeMillis: 5)");
    EXPECT_EQ(description(RemoteCreateResult::errorResponse("ERROR")), "errorResponseFromTheApi(ERROR)");
    EXPECT_EQ(description(RemoteCreateResult::fail("why")), "fail(why)");
    EXPECT_EQ(description(RemoteCreateResult::of(Kind::fail)), "fail(nil)");
    EXPECT_EQ(description(RemoteCreateResult::of(Kind::alreadyExists)), "alreadyExists");
    EXPECT_EQ(description(RemoteCreateResult::of(Kind::failParseDate)), "failParseDate");
    EXPECT_EQ(description(RemoteCreateResult::of(Kind::samplingRejected)), "samplingRejected");
    EXPECT_EQ(description(RemoteCreateResult::of(Kind::sessionReplayNotEnabled)), "sessionReplayNotEnabled");
}

TEST(RemoteCloseResult, MapsToTheCloseResult) {
    RemoteCloseResult result;
    EXPECT_EQ(result.asSessionCloseResult(), SessionCloseResult::of(SessionCloseResult::Kind::success));
    result.kind = RemoteCloseResult::Kind::fail;
    result.reason = "why";
    EXPECT_EQ(result.asSessionCloseResult(), SessionCloseResult::fail("why"));
    result.kind = RemoteCloseResult::Kind::noSession;
    result.reason.reset();
    EXPECT_EQ(result.asSessionCloseResult(), SessionCloseResult::fail(std::nullopt));
}

}  // namespace
}  // namespace mireth
