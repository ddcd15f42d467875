#include "PrivateSide/Ingestion/ChunkPusher.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "support/ApiPhone.hpp"

namespace mireth {
namespace {

using test::ApiPhone;
using test::errorLine;
using test::FakeHttpClient;
using test::infoLine;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* success = R"({"status":"SUCCESS"})";

class Pusher : public testing::Test {
  protected:
    void SetUp() override { phone.path->report(true, true); }
    ~Pusher() override { (void)phone.capture.take(); }

    void listen() {
        pusher->startListeningForChunks([this] { ++stops; });
    }
    /// Announces a chunk with its file.
    void announce(std::int64_t number, const std::string& sessionId = "S1") {
        phone.files->files["/caches/mireth/playback/" + sessionId + "-" + std::to_string(number) + ".mp4"] =
            "video";
        store->notifyPlaybackChunkReady({sessionId, 0}, number, 1700000000000 + number);
    }
    void announceAnsweredBy(platform::HttpResult answer, std::int64_t number = 0) {
        phone.http->answerAll(std::move(answer));
        announce(number);
        phone.phone.runUntilIdle();
    }
    std::size_t uploads() const { return phone.http->requests().size() - 1; }
    std::string uploadBody(std::size_t number) const {
        return phone.http->requests().at(number + 1).body.value_or("");
    }
    void answerUpload(std::size_t number, platform::HttpResult answer) {
        phone.http->complete(number + 1, std::move(answer));
        phone.phone.runUntilIdle();
    }

    ApiPhone phone;
    std::shared_ptr<MApiClient> client = phone.makeConfiguredClient();
    std::shared_ptr<SessionDataDao> store = std::make_shared<SessionDataDao>(
        phone.capture.log(), std::make_shared<EventBuffer>(phone.capture.log()),
        std::make_shared<PlaybackStorage>(phone.capture.log(), phone.files), [](Work work) { work(); });
    std::shared_ptr<NetworkStateProvider> network = phone.makeNetworkState();
    std::shared_ptr<ChunkPusher> pusher =
        std::make_shared<ChunkPusher>(phone.capture.log(), client, store, network, phone.phone.background);
    int stops = 0;
};

TEST_F(Pusher, IsIdleUntilItListens) {
    announce(0);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 0U);
}

TEST_F(Pusher, UploadsAChunkWithAMarkerAtTheEndOfItsTimeline) {
    phone.capture.log().setAllowedTags({LogTag::network});
    listen();
    store->addEvent("S1", {EventName::sessionStartMarker, 1, std::nullopt});
    store->addEvent("S1", {EventName::screenChange, 2, std::nullopt});
    announceAnsweredBy(FakeHttpClient::response(200, success), 3);
    ASSERT_EQ(uploads(), 1U);
    EXPECT_THAT(uploadBody(0),
                HasSubstr(R"([{"timestamp":1,"type":"SessionStartMarker","chunkNumber":3},)"
                          R"({"timestamp":2,"type":"ScreenChange","chunkNumber":3},)"
                          R"({"timestamp":1700000000003,"type":"ChunkEndMarker","chunkNumber":3}])"));
    EXPECT_THAT(uploadBody(0), HasSubstr(R"("sessionId":"S1","chunkNumber":3,"playbackDataVersion":1,)"
                                         R"("chunkTimestamp":1700000000003})"));
    EXPECT_THAT(uploadBody(0), HasSubstr("filename=\"S1-3.mp4\""));
    EXPECT_EQ(stops, 0);
    const auto lines = phone.capture.take();
    ASSERT_THAT(lines, SizeIs(6));
    EXPECT_EQ(lines[0], infoLine(LogTag::network, "Pusher starts pushing"));
    EXPECT_EQ(lines[1], infoLine(LogTag::network, "Performing buffer chunk push"));
    EXPECT_EQ(lines[5], infoLine(LogTag::network, R"(Successfuly pushed chunk. ["chunkNumber": "3"])"));
}

TEST_F(Pusher, AnnouncingReturnsBeforeAnythingIsSent) {
    listen();
    announce(0);
    EXPECT_EQ(uploads(), 0U);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 1U);
}

TEST_F(Pusher, WithoutANetworkAChunkIsSkippedAndItsFileStays) {
    phone.capture.log().setAllowedTags({LogTag::network});
    phone.path->report(false);
    listen();
    announceAnsweredBy(FakeHttpClient::response(200, success));
    EXPECT_EQ(uploads(), 0U);
    EXPECT_EQ(stops, 0);
    EXPECT_THAT(phone.files->files, SizeIs(1));
    phone.capture.expectLines(
        {infoLine(LogTag::network, "Pusher starts pushing"),
         infoLine(LogTag::network, "Canceling buffer chunk push, network unavailable")});
    // Back on the network only what comes then is uploaded.
    phone.path->report(true);
    announceAnsweredBy(FakeHttpClient::response(200, success), 1);
    EXPECT_EQ(uploads(), 1U);
    EXPECT_THAT(uploadBody(0), HasSubstr(R"("chunkNumber":1,)"));
}

TEST_F(Pusher, AFailedRequestEndsTheRecordingWithItsReason) {
    listen();
    announceAnsweredBy(FakeHttpClient::response(500, ""));
    EXPECT_EQ(stops, 1);
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(Single chunk skipped: Error during chunk push. ["reason": "Request failed."])"));
}

TEST_F(Pusher, AnEventThatCannotBeEncodedEndsTheRecordingToo) {
    listen();
    const EventTarget nowhere{std::numeric_limits<float>::infinity(), 0, 0, 0};
    store->addEvent("S1", {EventName::userInteraction, 1, InteractionCapturedDetails{"Tap", nowhere}});
    announceAnsweredBy(FakeHttpClient::response(200, success));
    EXPECT_EQ(uploads(), 0U);
    EXPECT_EQ(stops, 1);
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(Single chunk skipped: Error during chunk push. ["reason": "Encoding error."])"));
}

TEST_F(Pusher, AMissingFileEndsTheRecording) {
    listen();
    phone.http->answerAll(FakeHttpClient::response(200, success));
    store->notifyPlaybackChunkReady({"S1", 0}, 0, 1);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 0U);
    EXPECT_EQ(stops, 1);
}

TEST_F(Pusher, AnyStatusButSuccessEndsTheRecording) {
    const std::vector<std::pair<std::string, std::string>> answers{
        {R"({"status":"THROTTLED"})", "THROTTLED"}, {R"({"status":"ERROR"})", "ERROR"}, {"{}", "nil"}};
    for (const auto& [body, shown] : answers) {
        stops = 0;
        listen();
        announceAnsweredBy(FakeHttpClient::response(200, body));
        EXPECT_EQ(stops, 1) << shown;
        phone.capture.expectLines(
            {errorLine(LogTag::network, R"(Single chunk skipped: Error during chunk push. ["statusCode": ")" +
                                            shown + R"(", "transactionId": "T1"])")});
    }
}

TEST_F(Pusher, AnAnswerWithoutATransactionIdShowsNil) {
    listen();
    announceAnsweredBy(FakeHttpClient::response(200, "{}", {}));
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network, R"(Single chunk skipped: Error during chunk push. )"
                                         R"(["statusCode": "nil", "transactionId": "nil"])"));
}

TEST_F(Pusher, AThrottledUploadIsNotRetried) {
    listen();
    announceAnsweredBy(FakeHttpClient::response(200, R"({"status":"THROTTLED"})"));
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 1U);
}

TEST_F(Pusher, UploadsOverlapAndMayEndInAnyOrder) {
    listen();
    announce(0);
    announce(1);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 2U);
    phone.capture.log().setAllowedTags({LogTag::network});
    answerUpload(1, FakeHttpClient::response(200, success));
    EXPECT_EQ(phone.capture.take().back(),
              infoLine(LogTag::network, R"(Successfuly pushed chunk. ["chunkNumber": "1"])"));
    answerUpload(0, FakeHttpClient::response(200, success));
    EXPECT_EQ(phone.capture.take().back(),
              infoLine(LogTag::network, R"(Successfuly pushed chunk. ["chunkNumber": "0"])"));
    EXPECT_EQ(stops, 0);
}

TEST_F(Pusher, StopWaitsForTheUploadThatWasStartedLast) {
    listen();
    announce(0);
    announce(1);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    phone.phone.runUntilIdle();
    EXPECT_FALSE(stopping->isDone);
    answerUpload(0, FakeHttpClient::response(200, success));
    EXPECT_FALSE(stopping->isDone);
    answerUpload(1, FakeHttpClient::response(200, success));
    EXPECT_TRUE(stopping->succeeded());
}

TEST_F(Pusher, StopDoesNotWaitForAnEarlierUpload) {
    listen();
    announce(0);
    announce(1);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    answerUpload(1, FakeHttpClient::response(200, success));
    EXPECT_TRUE(stopping->succeeded());
}

TEST_F(Pusher, StopWithoutAnUploadEndsAtOnce) {
    listen();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    phone.phone.runUntilIdle();
    EXPECT_TRUE(stopping->succeeded());
}

TEST_F(Pusher, AfterStopNoChunkIsUploaded) {
    listen();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    phone.phone.runUntilIdle();
    ASSERT_TRUE(stopping->succeeded());
    announceAnsweredBy(FakeHttpClient::response(200, success));
    EXPECT_EQ(uploads(), 0U);
}

TEST_F(Pusher, AChunkAnnouncedWhileStopWaitsIsStillUploaded) {
    listen();
    announce(0);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    phone.phone.runUntilIdle();
    announce(1);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 2U);
    answerUpload(0, FakeHttpClient::response(200, success));
    ASSERT_TRUE(stopping->succeeded());
    announce(2);
    phone.phone.runUntilIdle();
    EXPECT_EQ(uploads(), 2U);
    answerUpload(1, FakeHttpClient::response(200, success));
}

TEST_F(Pusher, AFailureAfterStopBeganIsOnlyLogged) {
    listen();
    announce(0);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    answerUpload(0, FakeHttpClient::response(500, ""));
    EXPECT_TRUE(stopping->succeeded());
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(Single chunk skipped: Error during chunk push. ["reason": "Request failed."])"));
}

TEST_F(Pusher, ALateFailureOfAnEarlierRecordingDoesNotEndTheNewOne) {
    listen();
    announce(0);
    announce(1);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    answerUpload(1, FakeHttpClient::response(200, success));
    ASSERT_TRUE(stopping->succeeded());
    listen();
    answerUpload(0, FakeHttpClient::response(500, ""));
    EXPECT_EQ(stops, 0);
    announceAnsweredBy(FakeHttpClient::response(500, ""), 2);
    EXPECT_EQ(stops, 1);
}

TEST_F(Pusher, StopEndsThoughTheClientNeverAnswersAndGoesAway) {
    listen();
    announce(0);
    phone.phone.runUntilIdle();
    const auto stopping = phone.phone.start(pusher->stopListeningForChunks());
    phone.phone.runUntilIdle();
    EXPECT_FALSE(stopping->isDone);
    phone.http->dropHeld();
    phone.phone.runUntilIdle();
    EXPECT_TRUE(stopping->succeeded());
}

TEST_F(Pusher, TheSubscriptionHoldsItWeakly) {
    listen();
    const std::weak_ptr<ChunkPusher> weak = pusher;
    pusher.reset();
    EXPECT_TRUE(weak.expired());
    announceAnsweredBy(FakeHttpClient::response(200, success));
    EXPECT_EQ(uploads(), 0U);
}

TEST_F(Pusher, TheErrorLinesOfAFailureArePostedToTheRemoteLog) {
    const auto remoteLog = phone.makeRemoteLog();
    remoteLog->initialize(client, network, {"p1", "b1"});
    phone.capture.log().setRemotePoster(remoteLog);
    listen();
    phone.http->setAnswer([](const platform::HttpRequest& request) -> std::optional<platform::HttpResult> {
        return request.method == "PUT" ? FakeHttpClient::response(500, "")
                                       : FakeHttpClient::response(200, R"({"status":"Success"})");
    });
    announce(0);
    phone.phone.runUntilIdle();
    // The transport's line, the client's and the pusher's.
    std::size_t posts = 0;
    for (const auto& request : phone.http->requests()) {
        posts += request.method == "POST" ? 1U : 0U;
    }
    EXPECT_EQ(posts, 3U);
}

}  // namespace
}  // namespace mireth
