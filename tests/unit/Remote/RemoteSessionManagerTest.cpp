#include "PrivateSide/Orchestrator/RemoteSessionManager.hpp"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
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
using testing::IsEmpty;
using testing::SizeIs;
using Kind = RemoteCreateResult::Kind;

std::string sessionBody(const std::string& id, const std::string& startTime = "2024-05-01T10:20:30.123Z",
                        const std::string& status = "SUCCESS") {
    nlohmann::ordered_json json;
    json["status"] = status;
    json["sessionInfo"]["sessionId"] = id;
    json["sessionInfo"]["sessionStartTime"] = startTime;
    json["sessionInfo"]["creationDataCenter"] = "dc";
    json["sessionInfo"]["isTestSession"] = false;
    return json.dump();
}

class Manager : public testing::Test {
  protected:
    ~Manager() override { (void)phone.capture.take(); }

    SrConfigurationResponse configuration(std::optional<SREnablement> enablement, double rate) {
        SrConfigurationResponse result;
        result.srEnabled = enablement;
        result.samplingRate = rate;
        result.dataCenter = "US_WEST.example";
        return result;
    }
    RemoteCreateResult create(std::optional<SREnablement> enablement, double rate = 100) {
        return phone.await(manager->createSession(configuration(enablement, rate)));
    }
    RemoteCreateResult createAnsweredBy(platform::HttpResult answer) {
        phone.http->answerAll(std::move(answer));
        return create(SREnablement::enabledForMobileOnly);
    }
    void setSampled(double draw) { phone.random->real = draw; }
    void allowInfos() { phone.capture.log().setAllowedTags({LogTag::network}); }
    /// The requests after the fetch of the configuration.
    std::size_t sent() const { return phone.http->requests().size() - 1; }

    ApiPhone phone;
    std::shared_ptr<MApiClient> client = phone.makeConfiguredClient();
    std::shared_ptr<RemoteLog> remoteLog = phone.makeRemoteLog();
    std::shared_ptr<RemoteSessionManager> manager = std::make_shared<RemoteSessionManager>(
        phone.capture.log(), client, remoteLog,
        [random = phone.random](double low, double high) { return random->uniformReal(low, high); });
};

TEST_F(Manager, InitializeGivesTheConfiguration) {
    allowInfos();
    phone.http->answerAll(FakeHttpClient::response(200, ApiPhone::configurationBody("dc")));
    const auto result = phone.await(manager->initialize());
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->dataCenter, "dc");
    const auto lines = phone.capture.take();
    ASSERT_THAT(lines, SizeIs(4));
    EXPECT_EQ(lines.front(), infoLine(LogTag::network, "Initializing RemoteSessionManager"));
    EXPECT_EQ(lines.back(), infoLine(LogTag::network, "Successfully Initialized " + description(*result)));
}

TEST_F(Manager, InitializeFailsWithTheErrorOfTheRequest) {
    phone.http->answerAll(FakeHttpClient::failure("cut off"));
    const auto result = phone.await(manager->initialize());
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), ApiError::networkError);
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network, R"(Failed to initialize a session. ["reason": "Network error."])"));
}

TEST_F(Manager, AProjectThatIsNotEnabledForMobileSendsNothing) {
    allowInfos();
    setSampled(1);
    for (const std::optional<SREnablement> enablement :
         {std::optional<SREnablement>(), std::optional(SREnablement::unknown),
          std::optional(SREnablement::disabled), std::optional(SREnablement::enabledForWebOnly)}) {
        EXPECT_EQ(create(enablement).kind, Kind::sessionReplayNotEnabled);
        phone.capture.expectLines({infoLine(
            LogTag::network,
            "Session creation was rejected because Session Replay is not enabled for this project")});
    }
    EXPECT_EQ(sent(), 0U);
    EXPECT_EQ(phone.random->lastHigh, 0) << "nothing was drawn";
}

TEST_F(Manager, BothEnablementsForMobileCreateASession) {
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody("S1")));
    EXPECT_EQ(create(SREnablement::enabledForMobileOnly).kind, Kind::success);
    EXPECT_EQ(create(SREnablement::enabledForWebAndMobile).kind, Kind::success);
    EXPECT_EQ(sent(), 2U);
}

TEST_F(Manager, TheDrawIsFromTheClosedRange1To100) {
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody("S1")));
    (void)create(SREnablement::enabledForMobileOnly);
    EXPECT_EQ(phone.random->lastLow, 1.0);
    EXPECT_EQ(phone.random->lastHigh, 100.0);
}

TEST_F(Manager, ASessionOutsideTheSampleSendsNothing) {
    allowInfos();
    setSampled(50.000001);
    EXPECT_EQ(create(SREnablement::enabledForMobileOnly, 50).kind, Kind::samplingRejected);
    EXPECT_EQ(sent(), 0U);
    phone.capture.expectLines({infoLine(LogTag::network, "Session creation rejected due to sampling")});
}

TEST_F(Manager, ADrawEqualToTheRateIsSampled) {
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody("S1")));
    setSampled(50);
    EXPECT_EQ(create(SREnablement::enabledForMobileOnly, 50).kind, Kind::success);
}

TEST_F(Manager, Rate100AlwaysRecordsAndRatesBelow1Never) {
    phone.http->answerAll(FakeHttpClient::response(200, sessionBody("S1")));
    setSampled(100);
    EXPECT_EQ(create(SREnablement::enabledForMobileOnly, 100).kind, Kind::success);
    setSampled(1);
    EXPECT_EQ(create(SREnablement::enabledForMobileOnly, 1).kind, Kind::success);
    for (const double rate : {0.0, 0.5, 0.999999, -5.0}) {
        EXPECT_EQ(create(SREnablement::enabledForMobileOnly, rate).kind, Kind::samplingRejected) << rate;
    }
}

TEST_F(Manager, ACreatedSessionIsItsIdAndStartTime) {
    allowInfos();
    const auto result = createAnsweredBy(FakeHttpClient::response(200, sessionBody("S1")));
    EXPECT_EQ(result.kind, Kind::success);
    EXPECT_EQ(result.session, (RemoteSessionInfo{"S1", 1714558830123}));
    EXPECT_EQ(phone.capture.take().back(),
              infoLine(LogTag::network, R"(Successfully created session. ["sessionId": "S1"])"));
}

TEST_F(Manager, TheRemoteLogLearnsTheSessionAndTheWholeDataCentre) {
    (void)createAnsweredBy(FakeHttpClient::response(200, sessionBody("S1")));
    const auto line = nlohmann::json::parse(remoteLog->generateLog("x", LogTag::network, {}));
    EXPECT_EQ(line["sessionId"], "S1");
    EXPECT_EQ(line["brandDc"], "US_WEST.example");
}

TEST_F(Manager, AStartTimeThatIsNotIso8601WithAFractionFailsTheDate) {
    for (const char* time : {"2024-05-01T10:20:30Z", "yesterday", ""}) {
        const auto result = createAnsweredBy(FakeHttpClient::response(200, sessionBody("S1", time)));
        EXPECT_EQ(result.kind, Kind::failParseDate) << time;
        EXPECT_EQ(result.asSessionStartResult(), SessionStartResult::fail(std::nullopt));
    }
    EXPECT_EQ(nlohmann::json::parse(remoteLog->generateLog("x", LogTag::network, {}))["sessionId"], "S1")
        << "the remote log learns the session before the date is read";
}

TEST_F(Manager, AStatusThatIsNoSuccessIsTheErrorResponse) {
    for (const char* status : {"THROTTLED", "ERROR"}) {
        const auto result = createAnsweredBy(
            FakeHttpClient::response(200, sessionBody("S1", "2024-05-01T10:20:30.123Z", status)));
        EXPECT_EQ(result.kind, Kind::errorResponseFromTheApi);
        EXPECT_EQ(result.statusCode, status);
        phone.capture.expectLines(
            {errorLine(LogTag::network, std::string(R"(Failed to initialize mireth SDK. ["statusCode": ")") +
                                            status + R"("])")});
    }
    EXPECT_FALSE(
        nlohmann::json::parse(remoteLog->generateLog("x", LogTag::network, {})).contains("sessionId"));
}

TEST_F(Manager, ARequestThatFailsIsAFailureWithItsReason) {
    const auto transport = createAnsweredBy(FakeHttpClient::failure("cut off"));
    EXPECT_EQ(transport.kind, Kind::fail);
    EXPECT_EQ(transport.reason, "Network error.");
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(API request for creating session failed. ["reason": "Network error."])"));
    const auto decoding = createAnsweredBy(FakeHttpClient::response(200, "{}"));
    EXPECT_EQ(decoding.kind, Kind::fail);
    EXPECT_EQ(decoding.reason, "Decoding error.");
}

TEST_F(Manager, AHostileSessionIdIsRefusedWithAReason) {
    const std::vector<std::string> hostile{"../x",
                                           "a/b",
                                           "x\r\nHost: evil",
                                           std::string(4096, 'a'),
                                           "größe",
                                           "",
                                           ".",
                                           "..",
                                           std::string("a\0b", 3),
                                           "a%2fb",
                                           "a b"};
    for (const auto& id : hostile) {
        const auto result = createAnsweredBy(FakeHttpClient::response(200, sessionBody(id)));
        EXPECT_EQ(result.kind, Kind::fail) << id;
        EXPECT_EQ(result.reason, "The service answered with a session id that cannot be used.");
        phone.capture.expectLines({errorLine(
            LogTag::network, R"(API request for creating session failed. ["reason": )"
                             R"("The service answered with a session id that cannot be used."])")});
    }
    EXPECT_FALSE(
        nlohmann::json::parse(remoteLog->generateLog("x", LogTag::network, {})).contains("sessionId"));
}

TEST_F(Manager, ClosingASessionLogsItsSuccess) {
    allowInfos();
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"SUCCESS"})"));
    const auto result = phone.await(manager->closeSession({"S1", 0}));
    EXPECT_EQ(result.kind, RemoteCloseResult::Kind::success);
    EXPECT_EQ(phone.capture.take().back(), infoLine(LogTag::network, "Successfully closed session."));
    EXPECT_THAT(phone.lastRequest().url, testing::HasSubstr("/sessions/S1/close-session"));
}

TEST_F(Manager, ACloseWhoseStatusIsNoSuccessStillSucceeds) {
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"ERROR"})"));
    EXPECT_EQ(phone.await(manager->closeSession({"S1", 0})).kind, RemoteCloseResult::Kind::success);
}

TEST_F(Manager, ACloseThatFailsCarriesTheReason) {
    phone.http->answerAll(FakeHttpClient::response(500, ""));
    const auto result = phone.await(manager->closeSession({"S1", 0}));
    EXPECT_EQ(result.kind, RemoteCloseResult::Kind::fail);
    EXPECT_EQ(result.reason, "Request failed.");
    EXPECT_EQ(phone.capture.take().back(),
              errorLine(LogTag::network,
                        R"(API request for closing session failed. ["reason": "Request failed."])"));
}

}  // namespace
}  // namespace mireth
