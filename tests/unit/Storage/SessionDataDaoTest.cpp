#include "PrivateSide/Storage/SessionDataDao.hpp"

#include <gmock/gmock.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Headless/FaultInjectingFileManager.hpp"
#include "PrivateSide/Configuration/RecordingError.hpp"
#include "support/LogCapture.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth {
namespace {

using headless::FaultInjectingFileManager;
using headless::FileOperation;
using test::errorLine;
using test::infoLine;
using test::LogCapture;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::filesystem::path directory = "/caches/mireth/playback";

TimelineEvent at(std::int64_t timestamp) {
    return {EventName::userInteraction, timestamp, std::nullopt};
}

class SessionData : public testing::Test {
  protected:
    std::unique_ptr<SessionDataDao> makeStore(PlaybackConfiguration configuration = {}) {
        return std::make_unique<SessionDataDao>(
            capture.log(), std::make_shared<EventBuffer>(capture.log()),
            std::make_shared<PlaybackStorage>(capture.log(), files),
            [this](Work work) { fileQueue.push_back(std::move(work)); }, configuration);
    }
    void runFileQueue() {
        while (!fileQueue.empty()) {
            auto work = std::move(fileQueue.front());
            fileQueue.pop_front();
            work();
        }
    }
    void storeFiles(int count) {
        for (int i = 0; i < count; ++i) {
            memory->files[directory / ("old-" + std::to_string(i) + ".mp4")] = "video";
        }
    }
    /// The error's message, or the file's name.
    static std::string clearedFile(SessionDataDao& store, const std::string& session, std::int64_t chunk) {
        try {
            return store.getClearedPlaybackFileURL(session, chunk).filename().string();
        } catch (const RecordingError& error) {
            return error.what();
        }
    }

    LogCapture capture;
    std::shared_ptr<tests::MemoryFileManager> memory = std::make_shared<tests::MemoryFileManager>();
    std::shared_ptr<FaultInjectingFileManager> files = std::make_shared<FaultInjectingFileManager>(memory);
    std::deque<Work> fileQueue;
    std::unique_ptr<SessionDataDao> store = makeStore();
    RemoteSessionInfo session{"S1", 1700000000000};
};

TEST_F(SessionData, AFinishedChunkCarriesWhatWasRecordedSinceTheOneBefore) {
    std::vector<ChunkData> chunks;
    const auto token = store->subscribeToChunks([&](const ChunkData& chunk) { chunks.push_back(chunk); });
    store->addEvent("S1", at(1));
    store->addEvent("S1", at(2));
    store->notifyPlaybackChunkReady(session, 0, 1000);
    store->addEvent("S1", at(3));
    store->notifyPlaybackChunkReady(session, 1, 2000);
    store->notifyPlaybackChunkReady(session, 2, 3000);
    ASSERT_THAT(chunks, SizeIs(3));
    EXPECT_EQ(chunks[0].session, session);
    EXPECT_EQ(chunks[0].chunkNumber, 0);
    EXPECT_THAT(chunks[0].timeline, ElementsAre(at(1), at(2)));
    EXPECT_EQ(chunks[0].playbackURL, directory / "S1-0.mp4");
    EXPECT_EQ(chunks[0].chunkEndTimestampMillis, 1000);
    EXPECT_EQ(chunks[1].chunkNumber, 1);
    EXPECT_THAT(chunks[1].timeline, ElementsAre(at(3)));
    EXPECT_EQ(chunks[1].playbackURL, directory / "S1-1.mp4");
    EXPECT_THAT(chunks[2].timeline, IsEmpty());
}

TEST_F(SessionData, EventsOfOneSessionNeverAppearInAnothersChunk) {
    std::vector<ChunkData> chunks;
    const auto token = store->subscribeToChunks([&](const ChunkData& chunk) { chunks.push_back(chunk); });
    store->addEvent("S1", at(1));
    store->addEvent("S2", at(2));
    store->notifyPlaybackChunkReady({"S2", 0}, 0, 1);
    store->notifyPlaybackChunkReady(session, 0, 1);
    ASSERT_THAT(chunks, SizeIs(2));
    EXPECT_THAT(chunks[0].timeline, ElementsAre(at(2)));
    EXPECT_THAT(chunks[1].timeline, ElementsAre(at(1)));
}

TEST_F(SessionData, WithoutAUrlNothingIsAnnouncedAndTheEventsAreGone) {
    std::vector<ChunkData> chunks;
    const auto token = store->subscribeToChunks([&](const ChunkData& chunk) { chunks.push_back(chunk); });
    store->addEvent("S1", at(1));
    files->failNext(FileOperation::createDirectory);
    store->notifyPlaybackChunkReady(session, 0, 1000);
    EXPECT_THAT(chunks, IsEmpty());
    capture.expectLines({errorLine(LogTag::playback, "Failed to read playback file")});
    store->addEvent("S1", at(2));
    store->notifyPlaybackChunkReady(session, 0, 2000);
    ASSERT_THAT(chunks, SizeIs(1));
    EXPECT_THAT(chunks[0].timeline, ElementsAre(at(2)));
}

TEST_F(SessionData, AfterTheSubscriptionIsDroppedNothingComes) {
    int calls = 0;
    {
        const auto token = store->subscribeToChunks([&](const ChunkData&) { ++calls; });
    }
    store->notifyPlaybackChunkReady(session, 0, 1);
    EXPECT_EQ(calls, 0);
}

TEST_F(SessionData, AClearedUrlIsFreeOfWhatWasThere) {
    memory->files[directory / "S1-3.mp4"] = "left over";
    memory->files[directory / "S1-4.mp4"] = "another";
    EXPECT_EQ(clearedFile(*store, "S1", 3), "S1-3.mp4");
    EXPECT_FALSE(memory->files.contains(directory / "S1-3.mp4"));
    EXPECT_TRUE(memory->files.contains(directory / "S1-4.mp4"));
}

TEST_F(SessionData, TheStoreAccepts180FilesWithTheDefaults) {
    storeFiles(179);
    EXPECT_EQ(clearedFile(*store, "S1", 0), "S1-0.mp4");
    storeFiles(180);
    EXPECT_EQ(clearedFile(*store, "S1", 0), "Playback storage is full");
}

TEST_F(SessionData, TheStoreAccepts360FilesWithChunksOf5Seconds) {
    PlaybackConfiguration configuration;
    configuration.secondsPerChunk = 5;
    const auto other = makeStore(configuration);
    storeFiles(359);
    EXPECT_EQ(clearedFile(*other, "S1", 0), "S1-0.mp4");
    storeFiles(360);
    EXPECT_EQ(clearedFile(*other, "S1", 0), "Playback storage is full");
}

TEST_F(SessionData, AFullStoreDeletesNothing) {
    storeFiles(180);
    memory->files.erase(directory / "old-0.mp4");
    memory->files[directory / "S1-0.mp4"] = "mine";
    EXPECT_EQ(clearedFile(*store, "S1", 0), "Playback storage is full");
    EXPECT_TRUE(memory->files.contains(directory / "S1-0.mp4"));
}

TEST_F(SessionData, WhatHappensOnceTheStoreIsFullIsNotKept) {
    store->addEvent("S1", at(1));
    storeFiles(180);
    EXPECT_EQ(clearedFile(*store, "S1", 180), "Playback storage is full");
    std::size_t events = 99;
    const auto token =
        store->subscribeToChunks([&](const ChunkData& chunk) { events = chunk.timeline.size(); });
    store->notifyPlaybackChunkReady(session, 0, 1);
    EXPECT_EQ(events, 0);
}

TEST_F(SessionData, AStoreThatCannotBeCountedFailsWithTheReason) {
    files->failNext(FileOperation::contentsOfDirectory, 1, "broken disk");
    EXPECT_THAT(clearedFile(*store, "S1", 0), HasSubstr("broken disk"));
}

TEST_F(SessionData, AHostileSessionIdFailsTheChunk) {
    memory->files["/caches/mireth/x-0.mp4"] = "mine";
    EXPECT_EQ(clearedFile(*store, "../x", 0), "The session id cannot be part of a file name.");
    EXPECT_EQ(memory->files.size(), 1U);
}

TEST_F(SessionData, DeletingAChunkRemovesItsFile) {
    memory->files[directory / "S1-0.mp4"] = "a";
    memory->files[directory / "S1-1.mp4"] = "b";
    store->deletePlaybackFile("S1", 0);
    EXPECT_FALSE(memory->files.contains(directory / "S1-0.mp4"));
    store->deleteChunk("S1", 1);
    EXPECT_TRUE(memory->files.empty());
    store->deleteChunk("S1", 1);
    capture.expectLines({});
}

TEST_F(SessionData, DeleteAllEmptiesTheBufferAtOnceAndTheFilesOnTheFileQueue) {
    std::vector<ChunkData> chunks;
    const auto token = store->subscribeToChunks([&](const ChunkData& chunk) { chunks.push_back(chunk); });
    memory->createDirectory(directory);
    memory->files[directory / "S1-0.mp4"] = "a";
    store->addEvent("S1", at(1));
    store->addEvent("S2", at(2));
    store->deleteAll();
    EXPECT_EQ(memory->files.size(), 1U);
    capture.expectLines({});
    runFileQueue();
    EXPECT_TRUE(memory->files.empty());
    capture.expectLines(
        {infoLine(LogTag::playback, R"(Removed file. ["filePath": "/caches/mireth/playback/S1-0.mp4"])")});
    store->notifyPlaybackChunkReady(session, 0, 1);
    store->notifyPlaybackChunkReady({"S2", 0}, 0, 1);
    ASSERT_THAT(chunks, SizeIs(2));
    EXPECT_THAT(chunks[0].timeline, IsEmpty());
    EXPECT_THAT(chunks[1].timeline, IsEmpty());
}

TEST_F(SessionData, QueuedDeletionsOutliveTheStore) {
    memory->createDirectory(directory);
    memory->files[directory / "S1-0.mp4"] = "a";
    store->deleteAll();
    store.reset();
    runFileQueue();
    EXPECT_TRUE(memory->files.empty());
    (void)capture.take();
}

}  // namespace
}  // namespace mireth
