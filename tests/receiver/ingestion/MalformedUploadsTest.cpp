// Uploads with one thing wrong each: a bad request, a line for the operator that says what, and nothing kept.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::chunkUpload;
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
        {"BrokenInfo", "the chunk information is not JSON at line 1, column 2", info("{")},
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
        {"BrokenTimeline", "the timeline is not JSON at line 1, column 2",
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

TEST(MalformedUploads, AreBadRequestsAndLeaveNothing) {
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

TEST(MalformedUploads, ABodyThatIsNotMultipartIsABadRequest) {
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

TEST(MalformedUploads, AnUploadThatBreaksOffLeavesNothing) {
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

}  // namespace
}  // namespace mireth::receiver
