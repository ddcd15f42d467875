// What an upload is answered when the disk turns out to be full, at whichever step.
#include <gtest/gtest.h>

#include <cerrno>

#include "ingestion/RecordPlayback.hpp"
#include "support/RunningReceiver.hpp"
#include "support/StoredSession.hpp"
#include "support/WatchedDisk.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

class FullDisk : public testing::Test {
  protected:
    FullDisk() { keep(*store_, {.id = "S1"}); }

    Answer put(std::int64_t number) {
        const auto upload = chunkUpload("S1", number);
        const auto given = receiver_.services();
        RecordPlayback exchange({.config = given.config,
                                 .store = *store_,
                                 .environment = given.environment,
                                 .metrics = given.metrics,
                                 .exporter = given.exporter},
                                shared_, upload.contentType());
        exchange.accept(upload.body());
        return exchange.finish();
    }

    RunningReceiver receiver_;
    const TemporaryDirectory directory_;
    WatchedDisk disk_;
    int names_ = 0;
    const std::unique_ptr<SqliteStore> store_ =
        std::move(SqliteStore::open(
                      directory_.file("data"), [this] { return std::to_string(++names_); }, {}, disk_.files())
                      .value());
    UploadLimits shared_;
};

TEST_F(FullDisk, IsAnswered507AtEveryStep) {
    for (const auto* const step :
         {"video made", "video written", "video synced", "folder synced", "row written", "row synced"}) {
        SCOPED_TRACE(step);
        disk_.fail(step, ENOSPC);
        const auto answer = put(0);
        EXPECT_EQ(answer.status, 507);
        EXPECT_EQ(answer.body, R"({"status":"ERROR"})");
        const auto reports = receiver_.takeReports();
        ASSERT_EQ(reports.size(), 1U);
        EXPECT_TRUE(reports[0].starts_with("a chunk was answered ERROR: there is no room left on the disk"))
            << reports[0];
    }
    disk_.fail("");
    EXPECT_EQ(put(0).status, 200);
    EXPECT_EQ(store_->contents("S1").value().value().chunks.size(), 1U);
}

TEST_F(FullDisk, ADiskThatIsBrokenIsNotFull) {
    disk_.fail("video synced", EIO);
    EXPECT_EQ(put(0).status, 500);
    EXPECT_EQ(receiver_.takeReports().size(), 1U);
}

}  // namespace
}  // namespace mireth::receiver
