// How many chunks, how fast and how large: what is past the caps is refused, what is within them still taken.
#include <gtest/gtest.h>

#include <cstdio>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::chunkUpload;
using test::infoJson;
using test::jsonPart;
using test::mp4;
using test::RunningReceiver;

constexpr const char* success = R"({"status":"SUCCESS"})";
constexpr const char* error = R"({"status":"ERROR"})";

TEST(RecordPlaybackLimits, PastTheRateTheAnswerIsThrottled) {
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

TEST(RecordPlaybackLimits, TheChunksOfOneSessionAreLimited) {
    RunningReceiver receiver(R"({"default":{},"limits":{"chunks":1}})");
    const auto id = receiver.createSession();
    EXPECT_EQ(receiver.put(chunkUpload(id, 7)).body, success);
    const auto second = receiver.put(chunkUpload(id, 8));
    EXPECT_EQ(second.status, 413);
    EXPECT_EQ(second.body, error);
    EXPECT_EQ(receiver.put(chunkUpload(id, 7)).body, success);
    EXPECT_EQ(receiver.videoFiles(), 1U);
}

TEST(RecordPlaybackLimits, ABodyPastTheCapIsTooLarge) {
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

TEST(RecordPlaybackLimits, APartPastItsCapIsTooLarge) {
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

}  // namespace
}  // namespace mireth::receiver
