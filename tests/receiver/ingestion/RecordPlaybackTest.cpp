// Chunk uploads over real sockets: what is kept, what is refused and how.
#include "ingestion/RecordPlayback.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
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
using test::videoPart;
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
    EXPECT_EQ(fileText(chunk.videoPath), mp4());
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
    const auto path = receiver.contents(id).chunks[0].videoPath;
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
    EXPECT_EQ(fileText(receiver.contents(id).chunks[0].videoPath), mp4());
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

TEST(RecordPlayback, PastTheRateTheAnswerIsThrottled) {
    RunningReceiver receiver(R"({"default":{"uploadRate":{"perSecond":1,"burst":2}}})");
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
    EXPECT_EQ(receiver.put(chunkUpload(id, 1)).body, success);
    const auto third = receiver.put(chunkUpload(id, 2));
    EXPECT_EQ(third.status, 200);
    EXPECT_EQ(third.body, R"({"status":"THROTTLED"})");
    EXPECT_EQ(receiver.contents(id).chunks.size(), 2U);
    EXPECT_EQ(receiver.videoFiles(), 2U);
    const auto other = receiver.createSession("b1", "p2");
    auto ofOther = chunkUpload(other, 0);
    ofOther.parts[1] = jsonPart("info", infoJson(other, 0, "b1", "p2"));
    EXPECT_EQ(receiver.put(ofOther).body, success);
    receiver.passSeconds(1);
    EXPECT_EQ(receiver.put(chunkUpload(id, 2)).body, success);
}

TEST(RecordPlayback, TheChunksOfOneSessionAreLimited) {
    RunningReceiver receiver(R"({"default":{},"limits":{"chunks":1}})");
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 7)).body, success);
    EXPECT_EQ(receiver.put(chunkUpload(id, 8)).body, error);
    EXPECT_EQ(receiver.put(chunkUpload(id, 7)).body, success);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(RecordPlayback, ABodyPastTheCapIsTooLarge) {
    RunningReceiver receiver(R"({"default":{},"limits":{"requestBytes":20000}})");
    const auto id = receiver.createSession();
    const auto large = chunkUpload(id, 0, mp4({.frames = 20, .bytesPerFrame = 2000}));
    const auto announced = receiver.put(large);
    EXPECT_EQ(announced.status, 413);
    EXPECT_EQ(announced.body, error);
    // The same without saying so beforehand.
    const test::RawConnection connection(receiver.port());
    char length[16];
    std::snprintf(length, sizeof length, "%zx", large.body().size());
    connection.send(
        "PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nTransfer-Encoding: chunked\r\n"
        "Content-Type: " +
        large.contentType() + "\r\n\r\n" + length + "\r\n" + large.body() + "\r\n0\r\n\r\n");
    EXPECT_EQ(connection.receive().status, 413);
    EXPECT_EQ(receiver.videoFiles(), 0U);
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
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

TEST(RecordPlayback, APartPastItsCapIsTooLarge) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    auto upload = chunkUpload(id, 0);
    upload.parts[0] = jsonPart("timeline", "[" + std::string(5'000'000, ' ') + "]");
    EXPECT_EQ(receiver.put(upload).status, 413);
    upload = chunkUpload(id, 0);
    upload.parts[1].content += std::string(20'000, ' ');
    EXPECT_EQ(receiver.put(upload).status, 413);
    EXPECT_EQ(receiver.videoFiles(), 0U);
}

struct Malformed {
    std::string what;
    std::string why;  // beginning of the operator's line
    std::function<void(Upload&, const std::string& id)> change;
};

std::vector<Malformed> malformedUploads() {
    const auto info = [](std::string text) {
        return [text = std::move(text)](Upload& upload, const std::string&) {
            upload.parts[1] = jsonPart("info", text);
        };
    };
    return {
        {"NoTimeline", "a part is missing", [](Upload& u, const auto&) { u.parts.erase(u.parts.begin()); }},
        {"NoInfo", "a part is missing", [](Upload& u, const auto&) { u.parts.erase(u.parts.begin() + 1); }},
        {"NoVideo", "a part is missing", [](Upload& u, const auto&) { u.parts.pop_back(); }},
        {"NoParts", "a part is missing", [](Upload& u, const auto&) { u.parts.clear(); }},
        {"InfoTwice", "the part \"chunk[info]\" is unknown or comes twice",
         [](Upload& u, const auto&) { u.parts.push_back(u.parts[1]); }},
        {"VideoTwice", "the part \"chunk[playback]\" is unknown or comes twice",
         [](Upload& u, const auto&) { u.parts.push_back(u.parts[2]); }},
        {"UnknownPart", "the part \"chunk[extra]\" is unknown or comes twice",
         [](Upload& u, const auto&) { u.parts.push_back(jsonPart("extra", "1")); }},
        {"VideoWithoutFilename", "the part \"chunk[playback]\" is not a file of type video/mp4",
         [](Upload& u, const auto&) { u.parts[2].head = jsonPart("playback", "").head; }},
        {"VideoOfAnotherType", "the part \"chunk[playback]\" is not a file of type video/mp4",
         [](Upload& u, const auto&) {
             u.parts[2].head =
                 "Content-Disposition: form-data; name=\"chunk[playback]\"; filename=\"a\"\r\nContent-Type: "
                 "text/html";
         }},
        {"BrokenInfo", "the chunk information is not JSON at byte 2", info("{")},
        {"InfoBomb", "the chunk information is nested deeper than 16 levels", info(std::string(10'000, '['))},
        {"EmptyInfo", "the chunk information: \"brandId\" must be a string", info("{}")},
        {"InfoIsAList", "the chunk information: not a JSON object", info("[]")},
        {"NegativeChunk", "the chunk information: \"chunkNumber\" must be from 0 to 999999",
         [](Upload& u, const std::string& id) { u.parts[1] = jsonPart("info", infoJson(id, -1)); }},
        {"OtherVersion", "the chunk information: \"playbackDataVersion\" must be 1",
         [](Upload& u, const auto&) {
             auto& text = u.parts[1].content;
             text.replace(text.find("Version\":1"), 10, "Version\":2");
         }},
        {"InfoWithAnotherKey", "the chunk information: it has a key too many",
         [](Upload& u, const auto&) { u.parts[1].content.insert(1, "\"x\":1,"); }},
        {"ChunkNumberAsText", "the chunk information: \"chunkNumber\" must be a 64-bit integer",
         [](Upload& u, const auto&) {
             auto& text = u.parts[1].content;
             text.replace(text.find("chunkNumber\":0"), 14, "chunkNumber\":\"0\"");
         }},
        {"BrokenTimeline", "the timeline is not JSON at byte 2",
         [](Upload& u, const auto&) { u.parts[0] = jsonPart("timeline", "[,]"); }},
        {"TimelineOfAnotherChunk", "timeline event 0: \"chunkNumber\" is not the chunk's, 0",
         [](Upload& u, const auto&) { u.parts[0] = jsonPart("timeline", timelineJson(1)); }},
        {"VideoIsText", "the video: box",
         [](Upload& u, const auto&) { u.parts[2] = videoPart("<script>alert(1)"); }},
        {"VideoIsEmpty", "the video: box \"moov\" is missing",
         [](Upload& u, const auto&) { u.parts[2] = videoPart(""); }},
        {"VideoIsCutOff", "the video: box \"moov\" says",
         [](Upload& u, const auto&) { u.parts[2] = videoPart(mp4().substr(0, 500)); }},
    };
}

TEST(RecordPlayback, MalformedUploadsAreBadRequestsAndLeaveNothing) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    for (const auto& each : malformedUploads()) {
        auto upload = chunkUpload(id, 0);
        each.change(upload, id);
        const auto response = receiver.put(upload);
        EXPECT_EQ(response.status, 400) << each.what;
        EXPECT_EQ(response.body, error) << each.what;
        const auto reports = receiver.takeReports();
        ASSERT_EQ(reports.size(), 1U) << each.what;
        EXPECT_TRUE(reports[0].starts_with("a chunk was answered ERROR: " + each.why)) << reports[0];
    }
    EXPECT_TRUE(receiver.contents(id).chunks.empty());
    EXPECT_EQ(receiver.videoFiles(), 0U);
    EXPECT_EQ(receiver.put(chunkUpload(id, 0)).body, success);
}

TEST(RecordPlayback, ABodyThatIsNotMultipartIsABadRequest) {
    RunningReceiver receiver;
    for (const auto* const type :
         {"application/json", "multipart/form-data", "multipart/form-data; boundary=\"{\""}) {
        const auto response =
            test::request(receiver.port(), "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback", "--x--",
                          "Content-Type: " + std::string(type) + "\r\n");
        EXPECT_EQ(response.status, 400) << type;
        EXPECT_EQ(response.body, error) << type;
    }
}

TEST(RecordPlayback, AnUploadThatBreaksOffLeavesNothing) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    const auto body = chunkUpload(id, 0).body();
    {
        const test::RawConnection connection(receiver.port());
        connection.send("PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nContent-Length: " +
                        std::to_string(body.size()) + "\r\nContent-Type: " +
                        chunkUpload(id, 0).contentType() + "\r\n\r\n" + body.substr(0, body.size() - 50));
    }
    Reports reports;
    for (int i = 0; i < 500 && reports.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        reports = receiver.takeReports();
    }
    receiver.server().stop();
    EXPECT_EQ(reports,
              Reports{"a chunk was answered ERROR: its body broke off (session " + id + ", chunk 0)"});
    EXPECT_EQ(receiver.videoFiles(), 0U);
    EXPECT_TRUE(receiver.contents(id).chunks.empty());
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
