#include "PrivateSide/Api/MApiClient.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/ApiPhone.hpp"

namespace mireth {
namespace {

using test::ApiPhone;
using test::errorLine;
using test::FakeHttpClient;
using test::headerOf;
using test::infoLine;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* query =
    "?M_CLIENTVERSION=1.2.3&M_DEVICEOS=17.4&M_CLIENTTYPE=VEXMobileIOS&M_ZoneID=p1&M_BID=b1";
constexpr const char* success = R"({"status":"SUCCESS"})";
constexpr const char* sessionBody =
    R"({"status":"SUCCESS","sessionInfo":{"sessionId":"S1","sessionStartTime":"2024-05-01T10:20:30.123Z",)"
    R"("creationDataCenter":"dc","isTestSession":false}})";

class Client : public testing::Test {
  protected:
    ApiResponseResult<SrRecordPlaybackResponse> upload(const std::shared_ptr<MApiClient>& client,
                                                       TimelineEvent event = {EventName::chunkEndMarker, 5,
                                                                              std::nullopt}) {
        return phone.await(client->recordPlayback("S1", 2, {toSrTimelineEvent(event, 2)},
                                                  "/caches/mireth/playback/S1-2.mp4", 1700000000123));
    }
    void storeVideo() { phone.files->files["/caches/mireth/playback/S1-2.mp4"] = "video"; }

    ApiPhone phone;
};

TEST_F(Client, FetchesTheConfigurationOfTheProject) {
    const auto client = phone.makeClient();
    phone.http->answerAll(FakeHttpClient::response(200, ApiPhone::configurationBody("dc.example")));
    const auto result = phone.await(client->getSrConfiguration());
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->data.dataCenter, "dc.example");
    EXPECT_TRUE(result->headers.empty()) << "the response headers are not passed on";
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.url,
              std::string("https://kelda.test/app-insights/v1/b1/p1/sessionReplayConfig") + query);
    EXPECT_EQ(request.body, std::nullopt);
    phone.capture.expectLines({});
}

TEST_F(Client, PathSegmentsFromTheHostAreEscaped) {
    const auto client = phone.makeClient("b/1", "p?1#");
    (void)phone.start(client->getSrConfiguration());
    phone.phone.runUntilIdle();
    EXPECT_THAT(phone.lastRequest().url, HasSubstr("/app-insights/v1/b%2F1/p%3F1%23/sessionReplayConfig?"));
}

TEST_F(Client, CreatesASessionInTheFirstLabelOfTheDataCentre) {
    const auto client = phone.makeConfiguredClient("us-west.example.com");
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody));
    const auto result = phone.await(client->createSession());
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->data.sessionInfo.sessionId, "S1");
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.url, std::string("https://sr.test/mobile-sr-ingestion/v1/sessions/create") + query);
    EXPECT_EQ(request.body, R"({"brandId":"b1","brandDc":"us-west","projectId":"p1","isTestSession":false})");
    EXPECT_EQ(headerOf(request, "Content-Type"), "application/json; charset=UTF-8");
    EXPECT_EQ(headerOf(request, "x-client-id"), "vex-mobile");
    phone.capture.expectLines({});
}

TEST_F(Client, ClosesASession) {
    const auto client = phone.makeClient();
    phone.http->answerAll(FakeHttpClient::response(200, success));
    ASSERT_TRUE(phone.await(client->closeSession("S1")).has_value()) << "needs no data centre";
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.url,
              std::string("https://sr.test/mobile-sr-ingestion/v1/sessions/S1/close-session") + query);
    EXPECT_EQ(request.body, R"({"brandId":"b1","projectId":"p1"})");
}

TEST_F(Client, ASessionIdCannotLeaveItsPathSegment) {
    const auto client = phone.makeClient();
    phone.http->answerAll(FakeHttpClient::response(200, success));
    (void)phone.await(client->closeSession("../x?y#z"));
    EXPECT_THAT(phone.lastRequest().url, HasSubstr("/sessions/..%2Fx%3Fy%23z/close-session?"));
}

TEST_F(Client, UploadsAChunkInThreeParts) {
    const auto client = phone.makeConfiguredClient("dc");
    storeVideo();
    phone.http->answerAll(FakeHttpClient::response(200, success));
    const auto result = upload(client);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->data.status, SrResponseStatus::success);
    EXPECT_EQ(result->headers, FakeHttpClient::bothHeaders());
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.method, "PUT");
    EXPECT_EQ(request.url,
              std::string("https://sr.test/mobile-sr-ingestion/v1/sessions/record-playback") + query);
    const std::string boundary = headerOf(request, "Content-Type").value().substr(30);
    EXPECT_EQ(request.body.value_or(""),
              "--" + boundary +
                  "\r\nContent-Disposition: form-data; name=\"chunk[timeline]\"\r\n\r\n"
                  R"([{"timestamp":5,"type":"ChunkEndMarker","chunkNumber":2}])"
                  "\r\n--" +
                  boundary +
                  "\r\nContent-Disposition: form-data; name=\"chunk[info]\"\r\n\r\n"
                  R"({"brandId":"b1","brandDc":"dc","projectId":"p1","sessionId":"S1","chunkNumber":2,)"
                  R"("playbackDataVersion":1,"chunkTimestamp":1700000000123})"
                  "\r\n--" +
                  boundary +
                  "\r\nContent-Disposition: form-data; name=\"chunk[playback]\"; filename=\"S1-2.mp4\"\r\n"
                  "Content-Type: video/mp4\r\n\r\nvideo\r\n--" +
                  boundary + "--\r\n");
}

TEST_F(Client, AnUploadIsLoggedWithItsTimeline) {
    const auto client = phone.makeConfiguredClient();
    phone.capture.log().setAllowedTags({LogTag::network});
    storeVideo();
    phone.http->answerAll(FakeHttpClient::response(200, success));
    ASSERT_TRUE(upload(client).has_value());
    const auto lines = phone.capture.take();
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_EQ(lines[2], infoLine(LogTag::network,
                                 R"(Playback successfully recorded. ["timelineEvents": )"
                                 R"("[{\"timestamp\":5,\"type\":\"ChunkEndMarker\",\"chunkNumber\":2}]"])"));
}

TEST_F(Client, TheStatusOfAnAnswerIsNotJudged) {
    const auto client = phone.makeConfiguredClient();
    storeVideo();
    for (const char* body : {R"({"status":"THROTTLED"})", R"({"status":"ERROR"})", "{}"}) {
        phone.http->answerAll(FakeHttpClient::response(200, body));
        EXPECT_TRUE(upload(client).has_value()) << body;
    }
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"ERROR"})"));
    EXPECT_TRUE(phone.await(client->closeSession("S1")).has_value());
    phone.capture.expectLines({});
}

TEST_F(Client, BeforeADataCentreIsKnownCreateAndUploadSendNothing) {
    const auto client = phone.makeClient();
    storeVideo();
    EXPECT_EQ(phone.await(client->createSession()).error(), ApiError::brandDcIsNotPresent);
    EXPECT_EQ(upload(client).error(), ApiError::brandDcIsNotPresent);
    EXPECT_EQ(phone.await(client->postLog("x", "error")).error(), ApiError::brandDcIsNotPresent);
    EXPECT_THAT(phone.http->requests(), IsEmpty());
    phone.capture.expectLines(
        {errorLine(LogTag::network,
                   R"(Unexpected error during session creation ["error": "Brand DC is not present."])"),
         errorLine(LogTag::network, R"(Unexpected error during playback recording ["sessionId": "S1", )"
                                    R"("chunkNumber": "2", "error": "Brand DC is not present."])"),
         errorLine(LogTag::network,
                   R"(Unexpected error while posting log ["error": "Brand DC is not present."])")});
}

TEST_F(Client, AnEmptyDataCentreCountsAsAbsent) {
    for (const char* dataCenter : {"", ".example"}) {
        const auto client = phone.makeConfiguredClient(dataCenter);
        EXPECT_EQ(phone.await(client->createSession()).error(), ApiError::brandDcIsNotPresent);
        (void)phone.capture.take();
    }
}

TEST_F(Client, AFailedConfigurationFetchLeavesTheDataCentreAsItWas) {
    const auto client = phone.makeConfiguredClient("first");
    phone.http->answerAll(FakeHttpClient::response(500, ""));
    EXPECT_EQ(phone.await(client->getSrConfiguration()).error(), ApiError::requestFailed);
    const auto lines = phone.capture.take();
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[1], errorLine(LogTag::network,
                                  R"(Unexpected error while getting SR configuration )"
                                  R"(["brandId": "b1", "projectId": "p1", "error": "Request failed."])"));
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody));
    ASSERT_TRUE(phone.await(client->createSession()).has_value());
    EXPECT_THAT(phone.lastRequest().body.value_or(""), HasSubstr(R"("brandDc":"first")"));
}

TEST_F(Client, FailuresAreLoggedByTheOperation) {
    const auto client = phone.makeConfiguredClient();
    phone.http->answerAll(FakeHttpClient::response(200, "{}"));
    EXPECT_EQ(phone.await(client->createSession()).error(), ApiError::decodingError);
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(Unexpected error during session creation ["error": "Decoding error."])"));
    phone.http->answerAll(FakeHttpClient::failure("cut off"));
    EXPECT_EQ(phone.await(client->closeSession("S1")).error(), ApiError::networkError);
    EXPECT_EQ(
        phone.capture.take().back(),
        errorLine(
            LogTag::network,
            R"(Unexpected error during session closure ["sessionId": "S1", "error": "Network error."])"));
}

TEST_F(Client, AMissingPlaybackFileSendsNothing) {
    const auto client = phone.makeConfiguredClient();
    const auto before = phone.http->requests().size();
    EXPECT_EQ(upload(client).error(), ApiError::encodingError);
    EXPECT_THAT(phone.http->requests(), SizeIs(before));
    phone.capture.expectLines(
        {errorLine(LogTag::network, R"(Encoding error. ["file": "S1-2.mp4"])"),
         errorLine(LogTag::network, R"(Unexpected error during playback recording ["sessionId": "S1", )"
                                    R"("chunkNumber": "2", "error": "Encoding error."])")});
}

TEST_F(Client, ACoordinateThatIsNotANumberFailsTheUploadAndSendsNothing) {
    const auto client = phone.makeConfiguredClient();
    storeVideo();
    const auto before = phone.http->requests().size();
    const EventTarget nowhere{std::numeric_limits<float>::quiet_NaN(), 0, 0, 0};
    EXPECT_EQ(
        upload(client, {EventName::userInteraction, 1, InteractionCapturedDetails{"Tap", nowhere}}).error(),
        ApiError::encodingError);
    EXPECT_THAT(phone.http->requests(), SizeIs(before));
    EXPECT_THAT(phone.capture.take(), SizeIs(2));
}

TEST_F(Client, PostsALogLineAsAForm) {
    const auto client = phone.makeConfiguredClient("US_WEST");
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"Failure"})"));
    const auto result = phone.await(client->postLog("a b", "error"));
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->data.status, PostLogResponseStatus::Failure);
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.url, "https://us-west.kelda.test/WRTarrowEngine/Ajax.php?action=ClientLog&" +
                               std::string(query).substr(1));
    EXPECT_EQ(request.body, "Message=a%20b&LevelName=error");
    EXPECT_EQ(request.method, "POST");
}

TEST_F(Client, AHostileDataCentreGetsNoLogLine) {
    for (const char* dataCenter : {"x@y", "#", "%2f", "-a", "a b", "evil/com"}) {
        const auto client = phone.makeConfiguredClient(dataCenter);
        const auto before = phone.http->requests().size();
        EXPECT_EQ(phone.await(client->postLog("x", "error")).error(), ApiError::invalidURL) << dataCenter;
        EXPECT_THAT(phone.http->requests(), SizeIs(before));
        phone.capture.expectLines(
            {errorLine(LogTag::network, R"(Unexpected error while posting log ["error": "Invalid url."])")});
    }
}

TEST_F(Client, OfAnAddressAsDataCentreOnlyTheFirstLabelCounts) {
    const auto client = phone.makeConfiguredClient("evil.com/");
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"Success"})"));
    ASSERT_TRUE(phone.await(client->postLog("x", "error")).has_value());
    EXPECT_THAT(phone.lastRequest().url,
                testing::StartsWith("https://evil.kelda.test/WRTarrowEngine/Ajax.php?"));
}

TEST_F(Client, WithoutEntriesInTheBundleTheDefaultsOfTheBuildCount) {
    ApiPhone bare(headless::TextByKey{});
    const auto client = bare.makeClient();
    (void)bare.start(client->getSrConfiguration());
    (void)bare.start(client->closeSession("S1"));
    bare.phone.runUntilIdle();
    const auto requests = bare.http->requests();
    ASSERT_THAT(requests, SizeIs(2));
    EXPECT_THAT(requests[0].url, testing::StartsWith(ServiceOrigins::defaults().kelda + "/app-insights/"));
    EXPECT_THAT(requests[1].url,
                testing::StartsWith(ServiceOrigins::defaults().sessionReplay + "/mobile-sr-ingestion/"));
    EXPECT_THAT(requests[0].url, HasSubstr("?M_CLIENTVERSION=Unknown&"));
    (void)bare.capture.take();
}

TEST_F(Client, TheQueryNamesTheWrapper) {
    ApiPhone wrapped(ApiPhone::defaultInformation(), {{"MirethClientType", "VEXMobileIOSReactNative"}});
    const auto client = wrapped.makeClient();
    (void)wrapped.start(client->getSrConfiguration());
    wrapped.phone.runUntilIdle();
    EXPECT_THAT(wrapped.lastRequest().url, HasSubstr("&M_CLIENTTYPE=VEXMobileIOSReactNative&"));
    (void)wrapped.capture.take();
}

TEST_F(Client, ANewClientReplacesTheQueryOfEveryRequest) {
    const auto first = phone.makeClient("b1", "p1");
    const auto second = phone.makeClient("b2", "p2");
    (void)phone.start(first->closeSession("S1"));
    phone.phone.runUntilIdle();
    EXPECT_THAT(phone.lastRequest().url, testing::EndsWith("&M_ZoneID=p2&M_BID=b2"));
    EXPECT_EQ(phone.lastRequest().body, R"({"brandId":"b1","projectId":"p1"})");
}

TEST_F(Client, AnUploadAndACloseMayRunAtOnce) {
    const auto client = phone.makeConfiguredClient();
    storeVideo();
    const auto uploading =
        phone.start(client->recordPlayback("S1", 2, {}, "/caches/mireth/playback/S1-2.mp4", 1));
    const auto closing = phone.start(client->closeSession("S1"));
    phone.phone.runUntilIdle();
    ASSERT_THAT(phone.http->requests(), SizeIs(3));
    phone.http->complete(2, FakeHttpClient::response(200, success));
    phone.phone.runUntilIdle();
    EXPECT_TRUE(closing->has_value());
    EXPECT_FALSE(uploading->has_value());
    phone.http->complete(1, FakeHttpClient::response(200, success));
    phone.phone.runUntilIdle();
    EXPECT_TRUE(uploading->has_value());
}

}  // namespace
}  // namespace mireth
