// Chunk uploads over real sockets: what is kept, and what is answered with an error.
#include "ingestion/RecordPlayback.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::chunkUpload;
using test::fileText;
using test::infoJson;
using test::jsonPart;
using test::mp4;
using test::RunningReceiver;
using test::timelineJson;
using test::Upload;
using Reports = std::vector<std::string>;

constexpr const char* success = R"({"status":"SUCCESS"})";
constexpr const char* error = R"({"status":"ERROR"})";

TEST(RecordPlayback, KeepsTheChunkItsEventsAndItsVideo) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    const auto response = receiver.put(chunkUpload(id, 0));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, success);
    const auto contents = receiver.contents(id);
    ASSERT_EQ(contents.chunks.size(), 1U);
    const auto& chunk = contents.chunks[0];
    EXPECT_EQ(chunk.number, 0);
    EXPECT_EQ(chunk.endMillis, 1'700'000'010'000);
    EXPECT_EQ(chunk.receivedMillis, RunningReceiver::wallMillis);
    EXPECT_EQ(chunk.frames, 20);
    EXPECT_EQ(chunk.durationMillis, 10'000);
    EXPECT_EQ(chunk.events, 8);
    EXPECT_EQ(chunk.timeline, timelineJson(0));
    EXPECT_EQ(receiver.video(chunk), mp4());
    EXPECT_EQ(receiver.takeReports(), Reports{});
}

TEST(RecordPlayback, NothingTheClientNamesReachesTheDisk) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    auto upload = chunkUpload(id, 0);
    upload.parts[2].head =
        "Content-Disposition: form-data; name=\"chunk[playback]\"; filename=\"../../evil.mp4\"\r\n"
        "Content-Type: video/mp4";
    EXPECT_EQ(receiver.put(upload).body, success);
    const auto path = receiver.store().videoPath(receiver.contents(id).chunks[0].video.key);
    EXPECT_EQ(std::filesystem::path(path).parent_path(), receiver.data() + "/videos");
    EXPECT_EQ(path.find("evil"), std::string::npos);
    struct stat info{};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat((receiver.data() + "/videos").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0700U);
    ASSERT_EQ(::stat(receiver.data().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0700U);
    ASSERT_EQ(::stat((receiver.data() + "/receiver.db").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
}

TEST(RecordPlayback, ThePartsMayComeInAnyOrder) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    std::vector<std::size_t> order{0, 1, 2};
    std::int64_t number = 0;
    do {
        const auto sorted = chunkUpload(id, number);
        Upload upload{.parts = {sorted.parts[order[0]], sorted.parts[order[1]], sorted.parts[order[2]]}};
        EXPECT_EQ(receiver.put(upload).body, success) << number;
        ++number;
    } while (std::ranges::next_permutation(order).found);
    EXPECT_EQ(receiver.contents(id).chunks.size(), 6U);
}

TEST(RecordPlayback, TheSameChunkTwiceIsKeptOnce) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.contents(id).summary.events, 8);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(RecordPlayback, TheSameChunkTwiceAtOnceIsKeptOnce) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    std::vector<std::thread> clients;
    std::atomic<int> successes{0};
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] { successes += receiver.put(chunkUpload(id, 0)).body == success ? 1 : 0; });
    }
    for (auto& client : clients) {
        client.join();
    }
    EXPECT_EQ(successes, 8);
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(RecordPlayback, AnotherVideoUnderTheSameNumberIsAnErrorAnswer) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    const auto response = receiver.put(chunkUpload(id, 0, mp4({.filler = 'y'})));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, error);
    EXPECT_EQ(receiver.video(receiver.contents(id).chunks[0]), mp4());
    EXPECT_EQ(receiver.videoFiles(), 1U);
    EXPECT_EQ(receiver.takeReports(),
              Reports{"a chunk was answered ERROR: another video has that chunk number (session " + id +
                      ", chunk 0)"});
}

TEST(RecordPlayback, AnUnknownSessionIsAnErrorAnswer) {
    RunningReceiver receiver;
    const auto response = receiver.put(chunkUpload("../x", 0));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, error);
    EXPECT_EQ(receiver.videoFiles(), 0U);
    EXPECT_EQ(
        receiver.takeReports(),
        Reports{"a chunk was answered ERROR: the session is unknown or closed (session ../x, chunk 0)"});
}

TEST(RecordPlayback, AClosedSessionIsAnErrorAnswer) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    receiver.closeSession(id);
    for (const std::int64_t number : {0, 1}) {
        const auto response = receiver.put(chunkUpload(id, number));
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, error);
    }
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(RecordPlayback, AnotherProjectsSessionIsAnErrorAnswer) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    auto upload = chunkUpload(id, 0);
    upload.parts[1] = jsonPart("info", infoJson(id, 0, "b1", "p2"));
    const auto response = receiver.put(upload);
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, error);
}

TEST(RecordPlayback, AChunkedBodyIsTaken) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    const auto upload = chunkUpload(id, 0);
    const test::RawConnection connection(receiver.port());
    connection.send(
        "PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nTransfer-Encoding: chunked\r\n"
        "Expect: 100-continue\r\nContent-Type: " +
        upload.contentType() + "\r\n\r\n");
    const auto body = upload.body();
    for (std::size_t at = 0; at < body.size(); at += 100) {
        const auto piece = body.substr(at, 100);
        char length[16];
        std::snprintf(length, sizeof length, "%zx", piece.size());
        connection.send(length + ("\r\n" + piece) + "\r\n");
    }
    connection.send("0\r\n\r\n");
    EXPECT_EQ(connection.receive().body, success);
}

TEST(RecordPlayback, WhatWasAcknowledgedIsThereAfterARestart) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    receiver.restart();
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    EXPECT_EQ(receiver.put(chunkUpload(id, 1)).body, success);
    EXPECT_EQ(receiver.closeSession(id).body, success);
    receiver.restart();
    EXPECT_EQ(receiver.put(chunkUpload(id, 2)).body, error);
    EXPECT_EQ(receiver.contents(id).chunks.size(), 2U);
}

TEST(RecordPlayback, ADiskThatFailsIsAServerErrorAndIsReported) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    std::filesystem::remove_all(receiver.data() + "/videos");
    const auto response = receiver.put(chunkUpload(id, 0));
    EXPECT_EQ(response.status, 500);
    EXPECT_EQ(response.body, error);
    const auto reports = receiver.takeReports();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_NE(reports[0].find("cannot make the video"), std::string::npos) << reports[0];
    EXPECT_TRUE(receiver.contents(id).chunks.empty());
}

}  // namespace
}  // namespace mireth::receiver
