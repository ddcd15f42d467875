// What may be kept: caps on a session and on the disk, and what becomes of old sessions.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>

#include "service/Housekeeping.hpp"
#include "service/Retention.hpp"
#include "support/RunningReceiver.hpp"
#include "support/StoredSession.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

constexpr std::int64_t day = 86'400'000;

TEST(SessionBytes, PastTheirCapAChunkIsTooLarge) {
    RunningReceiver receiver(R"({"default":{},"limits":{"sessionBytes":5000}})");
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).status, 200);
    const auto second = receiver.put(chunkUpload(id, 1, mp4({.bytesPerFrame = 200})));
    EXPECT_EQ(second.status, 413);
    EXPECT_EQ(second.body, R"({"status":"ERROR"})");
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.videoFiles(), 1U);
    // Another session has room of its own.
    EXPECT_EQ(receiver.put(chunkUpload(receiver.createSession(), 0)).status, 200);
}

TEST(TimelineBytes, PastTheirCapAChunkIsTooLarge) {
    RunningReceiver receiver(R"({"default":{},"limits":{"timelineBytes":2000}})");
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).status, 200);
    EXPECT_EQ(receiver.put(chunkUpload(id, 1)).status, 413);
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(DiskBytes, PastTheirCapThereIsNoRoomLeft) {
    RunningReceiver receiver(R"({"default":{},"limits":{"diskBytes":1000000}})");
    const auto id = receiver.createSession();
    const auto large = mp4({.bytesPerFrame = 20'000});
    EXPECT_EQ(receiver.put(chunkUpload(id, 0, large)).status, 200);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(receiver.put(chunkUpload(id, 1, mp4({.bytesPerFrame = 45'000}))).status, 507);
    }
    EXPECT_EQ(receiver.videoFiles(), 1U);
    // What was refused took nothing of the room; what is removed gives its room back; a restart counts anew.
    EXPECT_EQ(receiver.store().stats()->videoBytes, large.size());
    receiver.restart();
    EXPECT_EQ(receiver.store().stats()->videoBytes, large.size());
    EXPECT_EQ(receiver.put(chunkUpload(id, 1, mp4({.bytesPerFrame = 45'000}))).status, 507);
    EXPECT_EQ(receiver.remove("/api/sessions/" + id).status, 204);
    EXPECT_EQ(receiver.store().stats()->videoBytes, 0U);
    EXPECT_EQ(receiver.put(chunkUpload(receiver.createSession(), 0, large)).status, 200);
}

TEST(DiskBytes, WhatMustStayFreeIsNotTaken) {
    // More than any disk has free.
    RunningReceiver receiver(R"({"default":{},"limits":{"freeBytes":1125899906842624}})");
    const auto created =
        receiver.post("/mobile-sr-ingestion/v1/sessions/create",
                      R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":false})");
    EXPECT_EQ(created.status, 507);
    const auto line = receiver.post("/WRTarrowEngine/Ajax.php?action=ClientLog&M_ZoneID=p&M_BID=b",
                                    "Message=m&LevelName=info");
    EXPECT_EQ(line.status, 507);
    EXPECT_EQ(line.body, R"({"status":"Failure"})");
    EXPECT_EQ(receiver.store().stats()->sessions, 0);
}

class RetentionTest : public testing::Test {
  protected:
    std::vector<std::string> left(RunningReceiver& receiver) const {
        std::vector<std::string> ids;
        const auto page = receiver.store().list({}).value();
        for (const auto& summary : page.sessions) {
            ids.push_back(summary.session.id);
        }
        return ids;
    }
};

TEST_F(RetentionTest, WithoutARuleNothingGoes) {
    RunningReceiver receiver;
    keep(receiver.store(), {.id = "ancient", .startMillis = 0, .chunks = {{}}});
    EXPECT_EQ(Retention(receiver.services()).enforce(), 0);
    EXPECT_EQ(left(receiver), std::vector<std::string>{"ancient"});
}

TEST_F(RetentionTest, SessionsGoWhenNothingCameInForTooManyDays) {
    RunningReceiver receiver(R"({"default":{},"retention":{"days":30}})");
    const auto now = RunningReceiver::wallMillis;
    keep(receiver.store(), {.id = "old", .startMillis = now - 30 * day - 20'000, .chunks = {{}}});
    keep(receiver.store(), {.id = "edge", .startMillis = now - 30 * day});
    keep(receiver.store(), {.id = "alive", .startMillis = now - 90 * day});
    keepChunk(receiver.store(), "alive", 0, {}, now - day);
    ASSERT_EQ(
        receiver.store().addLogLine(
            {.sessionId = {}, .receivedMillis = now - 31 * day, .levelName = "info", .message = "old"}, {}),
        LineOutcome::kept);
    ASSERT_EQ(receiver.store().addLogLine(
                  {.sessionId = {}, .receivedMillis = now, .levelName = "info", .message = "new"}, {}),
              LineOutcome::kept);
    Retention retention(receiver.services());
    EXPECT_EQ(retention.enforce(), 1);
    EXPECT_EQ(left(receiver), (std::vector<std::string>{"edge", "alive"}));
    EXPECT_EQ(receiver.store().strayLogLines()->size(), 1U);
    EXPECT_EQ(receiver.videoFiles(), 1U);
    EXPECT_EQ(receiver.takeReports(),
              std::vector<std::string>{"removed 1 sessions by the rules of retention"});
    receiver.setWall(now + 1);
    EXPECT_EQ(retention.enforce(), 1);
    EXPECT_EQ(left(receiver), std::vector<std::string>{"alive"});
}

TEST_F(RetentionTest, MoreSessionsThanABatchGoAtOnce) {
    RunningReceiver receiver(R"({"default":{},"retention":{"days":1}})");
    for (int i = 0; i < 120; ++i) {
        keep(receiver.store(), {.id = std::to_string(i), .startMillis = i});
    }
    EXPECT_EQ(Retention(receiver.services()).enforce(), 120);
    EXPECT_TRUE(left(receiver).empty());
}

TEST_F(RetentionTest, TheOldestGoWhenTooMuchIsKeptButNotWhatIsBeingRecorded) {
    RunningReceiver receiver(R"({"default":{},"retention":{"bytes":950000}})");
    const auto now = RunningReceiver::wallMillis;
    const std::string video(300'000, 'v');
    const auto add = [&](const std::string& id, std::int64_t start, std::int64_t received) {
        keep(receiver.store(), {.id = id, .startMillis = start});
        keepChunk(receiver.store(), id, 0, {}, received, video);
    };
    add("recording", now - 50 * day, now - 1000);
    add("first", now - 40 * day, now - 40 * day);
    add("second", now - 30 * day, now - 30 * day);
    add("third", now - 20 * day, now - 20 * day);
    EXPECT_EQ(Retention(receiver.services()).enforce(), 2);
    EXPECT_EQ(left(receiver), (std::vector<std::string>{"third", "recording"}));
    EXPECT_LE(receiver.store().stats()->videoBytes, 600'000U);
}

TEST(HousekeepingTest, WorksAgainAndAgainUntilItEnds) {
    std::mutex mutex;
    std::condition_variable changed;
    int turns = 0;
    {
        const Housekeeping housekeeping(
            [&] {
                const std::lock_guard lock(mutex);
                ++turns;
                changed.notify_all();
            },
            std::chrono::milliseconds(1));
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return turns >= 3; }));
    }
}

TEST(HousekeepingTest, EndsWithoutWaitingForTheNextTurn) {
    const Housekeeping housekeeping([] {}, std::chrono::hours(1));
}

}  // namespace
}  // namespace mireth::receiver
