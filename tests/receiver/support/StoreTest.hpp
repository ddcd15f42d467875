// The embedded store in a folder of its own, with one session to put chunks into. Used by the tests of the
// store.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "sqlite/SqliteStore.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver::test {

class StoreTest : public testing::Test {
  protected:
    std::unique_ptr<SqliteStore> open() {
        auto store = SqliteStore::open(data_, [this] { return "video-" + std::to_string(++videos_); });
        EXPECT_TRUE(store) << store.error();
        return std::move(*store);
    }
    std::string errorOfOpening() {
        const auto store = SqliteStore::open(data_, [] { return "video"; });
        return store ? "" : store.error();
    }
    static PutOutcome put(SqliteStore& store, std::int64_t number, const std::string& bytes = "video") {
        return tryPut(store, number, bytes).value();
    }
    static Stored<PutOutcome> tryPut(SqliteStore& store, std::int64_t number,
                                     const std::string& bytes = "video", std::size_t timelineBytes = 0) {
        const auto video = store.beginVideo();
        EXPECT_TRUE((*video)->append(bytes));
        const Chunk chunk{.number = number,
                          .frames = 2,
                          .durationMillis = 1000,
                          .events = 1,
                          .timeline = R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":)" +
                                      std::to_string(number) + "}" + std::string(timelineBytes, ' ') + "]"};
        return store.putChunk("S1", chunk, {}, **video, {});
    }
    static void addSession(SqliteStore& store, const std::string& id = "S1", std::int64_t start = 5) {
        ASSERT_TRUE(store.addSession({.id = id,
                                      .brandId = "b",
                                      .brandDc = "d",
                                      .projectId = "p",
                                      .startMillis = start,
                                      .closedMillis = {}}));
    }
    bool hasVideo(const std::string& name) const {
        return std::filesystem::exists(data_ + "/videos/" + name);
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("some/where/data");
    int videos_ = -1;  // the first identifier is the opening's
};

}  // namespace mireth::receiver::test
