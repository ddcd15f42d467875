// In what order a chunk becomes durable, and what is left when a step on the way fails or the power goes.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <set>

#include "sqlite/SqliteStore.hpp"
#include "support/StoredSession.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/WatchedDisk.hpp"

namespace mireth::receiver {
namespace {

using test::TemporaryDirectory;
using test::WatchedDisk;
using Steps = std::vector<std::string>;
namespace fs = std::filesystem;

const Steps allSteps{"video made",    "video written", "video synced",
                     "folder synced", "row written",   "row synced"};

class Durability : public testing::Test {
  protected:
    Durability() {
        store_ = std::move(SqliteStore::open(
                               data_, [this] { return "v" + std::to_string(++names_); }, {}, disk_.files())
                               .value());
        test::keep(*store_, {.id = "S1"});
        disk_.takeSteps();
    }

    /// A chunk's way into the store, as an upload goes it.
    Stored<PutOutcome> put(std::int64_t number, const std::string& bytes = "video") const {
        const auto video = store_->beginVideo();
        if (!video) {
            return std::unexpected(video.error());
        }
        if (!*video) {
            return PutOutcome::noRoom;
        }
        const auto written = (*video)->append(bytes);
        if (!written) {
            return std::unexpected(written.error());
        }
        return *written ? store_->putChunk("S1", {.number = number, .timeline = "[]"}, {}, **video, {})
                        : PutOutcome::noRoom;
    }
    static std::size_t chunksIn(Store& store) { return store.contents("S1").value().value().chunks.size(); }
    static std::size_t filesIn(const std::string& data) {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(data + "/videos"), {}));
    }
    void expectNothing() const {
        EXPECT_EQ(chunksIn(*store_), 0U);
        EXPECT_EQ(store_->stats()->chunks, 0);
        EXPECT_EQ(store_->summary("S1").value().value().bytes, 0);
    }
    void expectNothingLeft() const {
        expectNothing();
        EXPECT_EQ(filesIn(data_), 0U);
        EXPECT_EQ(store_->stats()->videoBytes, 0U);
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("data");
    WatchedDisk disk_;
    int names_ = -1;
    std::unique_ptr<SqliteStore> store_;
};

TEST_F(Durability, TheVideoAndItsNameAreSyncedBeforeTheRowIsWritten) {
    EXPECT_EQ(put(0), PutOutcome::kept);
    EXPECT_EQ(disk_.takeSteps(), allSteps);
}

TEST_F(Durability, NobodySeesAChunkBeforeItsRowIsSynced) {
    const auto reader = std::move(SqliteStore::openForReading(data_).value());
    std::map<std::string, std::size_t> seen;
    disk_.watch([&](const std::string& step) { seen[step] += chunksIn(*reader); });
    EXPECT_EQ(put(0), PutOutcome::kept);
    disk_.watch({});
    EXPECT_EQ(seen.size(), allSteps.size());
    for (const auto& [step, chunks] : seen) {
        EXPECT_EQ(chunks, 0U) << step;
    }
    EXPECT_EQ(chunksIn(*reader), 1U);
}

TEST_F(Durability, AStepThatFailsRefusesTheChunkAndLeavesNothing) {
    for (const auto& step : allSteps) {
        SCOPED_TRACE(step);
        disk_.fail(step);
        EXPECT_FALSE(put(0));
        expectNothing();
        // What a failed commit left is removed as soon as the disk lets it be known that it failed.
        disk_.fail("");
        EXPECT_EQ(store_->finishRemovals(), true);
        expectNothingLeft();
    }
    EXPECT_EQ(put(0), PutOutcome::kept);
    EXPECT_EQ(chunksIn(*store_), 1U);
}

TEST_F(Durability, NothingThatComesAfterAFailedStepIsDone) {
    for (std::size_t i = 0; i < 4; ++i) {
        disk_.fail(allSteps[i]);
        EXPECT_FALSE(put(0));
        auto expected = Steps(allSteps.begin(), allSteps.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        if (i > 0) {
            expected.emplace_back("video removed");
        }
        EXPECT_EQ(disk_.takeSteps(), expected);
    }
}

TEST_F(Durability, WithoutRoomAChunkIsRefusedAsSuch) {
    for (const int error : {ENOSPC, EDQUOT}) {
        for (const auto& step : allSteps) {
            SCOPED_TRACE(step + " " + std::to_string(error));
            disk_.fail(step, error);
            EXPECT_EQ(put(0), PutOutcome::noRoom);
            disk_.fail("");
            EXPECT_EQ(store_->finishRemovals(), true);
            expectNothingLeft();
        }
    }
    EXPECT_EQ(put(0), PutOutcome::kept);
}

TEST_F(Durability, AVideoThatCannotBeRemovedEitherIsSweptAtTheNextStart) {
    disk_.fail("video synced");
    disk_.watch([&](const std::string& step) {
        if (step == "video removed") {
            disk_.fail("video removed");
        }
    });
    EXPECT_FALSE(put(0));
    EXPECT_EQ(filesIn(data_), 1U);
    expectNothing();
    store_.reset();
    store_ = std::move(SqliteStore::open(data_, [] { return "w"; }).value());
    EXPECT_EQ(store_->sweptVideos(), 1);
    expectNothingLeft();
}

/// What a power cut leaves: names that were synced with the bytes that were, and of the log what was synced.
class PowerCuts : public Durability {
  protected:
    struct Cut {
        std::string data;
        std::size_t acknowledged;  ///< chunks, by then
    };

    void cut() {
        const auto data = directory_.file("cut-" + std::to_string(cuts_.size()));
        fs::create_directories(data + "/videos");
        for (const auto& name : namesSynced_) {
            fs::copy_file(data_ + "/videos/" + name, data + "/videos/" + name);
            fs::resize_file(data + "/videos/" + name, bytesSynced_[name]);
        }
        for (const std::string name : {"/receiver.db", "/receiver.db-wal"}) {
            fs::copy_file(data_ + name, data + name);
        }
        fs::resize_file(data + "/receiver.db-wal", logSynced_);
        cuts_.push_back({.data = data, .acknowledged = acknowledged_});
    }
    /// What the step that is about to be done makes durable.
    void sync(const std::string& step) {
        for (const auto& entry : fs::directory_iterator(data_ + "/videos")) {
            if (step == "video synced") {
                bytesSynced_[entry.path().filename()] = entry.file_size();
            } else if (step == "folder synced") {
                namesSynced_.insert(entry.path().filename());
            }
        }
        if (step == "row synced") {
            logSynced_ = fs::file_size(data_ + "/receiver.db-wal");
        }
    }

    std::map<std::string, std::uintmax_t> bytesSynced_;
    std::set<std::string> namesSynced_;
    std::uintmax_t logSynced_ = fs::file_size(data_ + "/receiver.db-wal");
    std::size_t acknowledged_ = 0;
    std::vector<Cut> cuts_;
};

TEST_F(PowerCuts, LoseNothingThatWasAcknowledgedAndLeaveNoHalfChunk) {
    disk_.watch([&](const std::string& step) {
        cut();
        sync(step);
    });
    for (std::int64_t number = 0; number < 3; ++number) {
        EXPECT_EQ(put(number), PutOutcome::kept);
        ++acknowledged_;
    }
    cut();
    disk_.watch({});
    ASSERT_GE(cuts_.size(), 3 * allSteps.size() + 1);
    for (const auto& each : cuts_) {
        SCOPED_TRACE(each.data);
        const auto store = std::move(SqliteStore::open(each.data, [] { return "w"; }).value());
        const auto contents = store->contents("S1").value().value();
        EXPECT_EQ(contents.chunks.size(), each.acknowledged);
        EXPECT_EQ(filesIn(each.data), each.acknowledged);
        for (const auto& chunk : contents.chunks) {
            EXPECT_EQ(store->openVideo(chunk.video.key).value()->size(), 5U);
        }
    }
}

}  // namespace
}  // namespace mireth::receiver
