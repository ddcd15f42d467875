#include "PrivateSide/Logger/RemoteLog.hpp"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "support/ApiPhone.hpp"
#include "support/PostedLines.hpp"

namespace mireth {
namespace {

using nlohmann::ordered_json;
using test::ApiPhone;
using test::errorLine;
using test::FakeHttpClient;
using testing::IsEmpty;
using testing::SizeIs;

std::shared_ptr<const LogMessagesSampler> drawing(std::int64_t value) {
    return std::make_shared<const LogMessagesSampler>([value](std::int64_t) { return value; });
}

ordered_json messageOf(const platform::HttpRequest& request) {
    const std::string body = request.body.value_or("");
    EXPECT_EQ(body.substr(0, 8), "Message=");
    return ordered_json::parse(test::postedText(body));
}

class RemoteLogging : public testing::Test {
  protected:
    void SetUp() override {
        phone.capture.log().setRemotePoster(remoteLog);
        answerPosts();
    }
    ~RemoteLogging() override { (void)phone.capture.take(); }

    void answerPosts() { phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"Success"})")); }

    void initialize(const std::string& dataCenter = "US_WEST") {
        client = phone.makeConfiguredClient(dataCenter);
        answerPosts();
        remoteLog->initialize(client, phone.makeNetworkState(), {"p1", "b1"});
    }

    /// The requests sent since the configuration was fetched.
    std::vector<platform::HttpRequest> posts() const {
        phone.phone.runUntilIdle();
        auto requests = phone.http->requests();
        std::erase_if(requests, [](const auto& request) { return request.method == "GET"; });
        return requests;
    }

    ApiPhone phone;
    std::shared_ptr<RemoteLog> remoteLog = phone.makeRemoteLog();
    std::shared_ptr<MApiClient> client;
};

TEST_F(RemoteLogging, BeforeInitialisationNothingIsSentAndNothingFails) {
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, true);
    EXPECT_THAT(posts(), IsEmpty());
    phone.capture.expectLines({});
}

TEST_F(RemoteLogging, AnErrorLineIsAFormPostToTheLogAddress) {
    initialize();
    phone.capture.log().error(LogTag::network, "x");
    const auto sent = posts();
    ASSERT_THAT(sent, SizeIs(1));
    EXPECT_EQ(sent[0].method, "POST");
    EXPECT_EQ(sent[0].url,
              "https://us-west.kelda.test/WRTarrowEngine/Ajax.php?action=ClientLog&M_CLIENTVERSION=1.2.3"
              "&M_DEVICEOS=17.4&M_CLIENTTYPE=VEXMobileIOS&M_ZoneID=p1&M_BID=b1");
    EXPECT_EQ(test::headerOf(sent[0], "Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_THAT(sent[0].body.value_or(""), testing::EndsWith("&LevelName=error"));
}

TEST_F(RemoteLogging, TheLineCarriesMessageTagAndMetadataInOrder) {
    initialize();
    phone.path->report(true, true);
    remoteLog->setSessionData({"US_WEST.example", "S1"});
    remoteLog->post(LogLevel::error, LogTag::playback, "went wrong", {{"reason", "why"}}, false);
    const auto sent = posts();
    ASSERT_THAT(sent, SizeIs(1));
    EXPECT_EQ(
        messageOf(sent[0]).dump(),
        R"({"logMessage":"went wrong","logTag":"PLAYBACK","clientSource":"vex-mobile",)"
        R"("clientType":"VEXMobileIOS","clientVexVersion":"1.2.3","deviceOsVersion":"17.4",)"
        R"("deviceName":"Test phone","deviceCodename":"phone14,2","networkType":"WIFI","projectId":"p1",)"
        R"("brandDc":"US_WEST.example","sessionId":"S1","reason":"why"})");
}

TEST_F(RemoteLogging, KeysWithoutASourceAreLeftOut) {
    const auto line = ordered_json::parse(remoteLog->generateLog("x", LogTag::network, {}));
    for (const char* key : {"networkType", "projectId", "brandDc", "sessionId", "clientReactNativeVersion",
                            "clientVexReactNativeVersion"}) {
        EXPECT_FALSE(line.contains(key)) << key;
    }
}

TEST_F(RemoteLogging, TheVersionIsUnknownWhenTheBundleDoesNotSay) {
    ApiPhone bare(headless::TextByKey{});
    const auto line = ordered_json::parse(bare.makeRemoteLog()->generateLog("x", LogTag::network, {}));
    EXPECT_EQ(line["clientVexVersion"], "Unknown");
}

TEST_F(RemoteLogging, AWrapperThatLeftItsNameAndVersionsIsNamed) {
    ApiPhone wrapped(ApiPhone::defaultInformation(), {{"MirethClientType", "VEXMobileIOSReactNative"},
                                                      {"MirethClientRNVersion", "0.74"},
                                                      {"MirethClientRNSdkVersion", "9.1"}});
    const auto line = ordered_json::parse(wrapped.makeRemoteLog()->generateLog("x", LogTag::network, {}));
    EXPECT_EQ(line["clientType"], "VEXMobileIOSReactNative");
    EXPECT_EQ(line["clientReactNativeVersion"], "0.74");
    EXPECT_EQ(line["clientVexReactNativeVersion"], "9.1");
}

TEST_F(RemoteLogging, WhatAWrapperLeavesLaterIsNotSeen) {
    const auto store = std::make_shared<headless::MemoryKeyValueStore>();
    phone.clientDetails = std::make_shared<const ClientDetailsProvider>(store);
    const auto early = phone.makeRemoteLog();
    store->set("MirethClientType", "VEXMobileIOSReactNative");
    store->set("MirethClientRNVersion", "0.74");
    const auto line = ordered_json::parse(early->generateLog("x", LogTag::network, {}));
    EXPECT_EQ(line["clientType"], "VEXMobileIOS");
    EXPECT_FALSE(line.contains("clientReactNativeVersion"));
}

TEST_F(RemoteLogging, AnAdditionalEntryReplacesTheTagAndMetadata) {
    const auto line = ordered_json::parse(remoteLog->generateLog(
        "x", LogTag::network, {{"logTag", "MINE"}, {"deviceName", "other"}, {"logMessage", "y"}}));
    EXPECT_EQ(line["logTag"], "MINE");
    EXPECT_EQ(line["deviceName"], "other");
    EXPECT_EQ(line["logMessage"], "y");
}

TEST_F(RemoteLogging, TextThatIsNotUtf8StillMakesALine) {
    const auto line =
        ordered_json::parse(remoteLog->generateLog("a\xff"
                                                   "b",
                                                   LogTag::network, {{"k", "\xc0"}}));
    EXPECT_EQ(line["logMessage"],
              "a\xEF\xBF\xBD"
              "b");
}

TEST_F(RemoteLogging, ADrawOf20IsPostedAnd21Not) {
    initialize();
    remoteLog->mockLogSampler(drawing(20));
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
    EXPECT_THAT(posts(), SizeIs(1));
    remoteLog->mockLogSampler(drawing(21));
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
    EXPECT_THAT(posts(), SizeIs(1));
}

TEST_F(RemoteLogging, IgnoreSamplingPostsWhatTheSamplerWouldRefuse) {
    initialize();
    remoteLog->mockLogSampler(drawing(21));
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, true);
    EXPECT_THAT(posts(), SizeIs(1));
}

TEST_F(RemoteLogging, PostReturnsBeforeAnythingIsSent) {
    initialize();
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
    EXPECT_THAT(phone.http->requests(), SizeIs(1)) << "only the configuration was fetched so far";
    EXPECT_THAT(posts(), SizeIs(1));
}

TEST_F(RemoteLogging, TheDrawAndTheMetadataAreTakenWhereTheLineIsPosted) {
    initialize();
    remoteLog->setSessionData({"dc", "first"});
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
    EXPECT_EQ(phone.random->lastBound, 100);
    remoteLog->setSessionData({"dc", "second"});
    const auto sent = posts();
    ASSERT_THAT(sent, SizeIs(1));
    EXPECT_EQ(messageOf(sent[0])["sessionId"], "first");
}

TEST_F(RemoteLogging, ResetStateRemovesTheClientAndNetworkAndKeepsProjectAndSession) {
    initialize();
    remoteLog->setSessionData({"dc", "S1"});
    remoteLog->mockLogSampler(drawing(99));
    remoteLog->resetState();
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, true);
    EXPECT_THAT(posts(), IsEmpty());
    auto line = ordered_json::parse(remoteLog->generateLog("x", LogTag::network, {}));
    EXPECT_FALSE(line.contains("networkType"));
    EXPECT_EQ(line["projectId"], "p1");
    EXPECT_EQ(line["sessionId"], "S1");
    // A new sampler with the defaults draws from the device's chance, which gives 0 here.
    remoteLog->mockApiClient(client);
    remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
    EXPECT_THAT(posts(), SizeIs(1));
}

TEST_F(RemoteLogging, NothingLoggedWhilePostingIsPostedThoughEverythingFails) {
    initialize();
    remoteLog->mockLogSampler(drawing(0));
    const std::vector<platform::HttpResult> failures{
        FakeHttpClient::failure("cut off"),
        FakeHttpClient::response(500, ""),
        FakeHttpClient::response(200, "not JSON"),
        FakeHttpClient::response(200, R"({"status":"Success"})", {}),  // no tracking headers
        FakeHttpClient::response(200, R"({"status":"Failure"})", {}),
        [] {
            platform::UrlResponse response;
            response.isHttp = false;
            response.typeName = "FileResponse";
            return response;
        }(),
    };
    for (std::size_t i = 0; i < failures.size(); ++i) {
        phone.http->answerAll(failures[i]);
        phone.capture.log().error(LogTag::network, "x");
        EXPECT_THAT(posts(), SizeIs(i + 1));
    }
}

TEST_F(RemoteLogging, NothingThatAListenerLogsWhilePostingIsPosted) {
    initialize();
    remoteLog->mockLogSampler(drawing(0));
    phone.http->answerAll(FakeHttpClient::failure("cut off"));
    constexpr int enough = 30;
    int calls = 0;
    phone.capture.log().addLogListener([&](LogTag, LogLevel, const std::string&) {
        if (++calls <= enough) {
            phone.capture.log().error(LogTag::signal, "mine");
        }
    });
    phone.capture.log().error(LogTag::network, "x");
    EXPECT_THAT(posts(), SizeIs(1));
    EXPECT_GT(calls, 1) << "of the failed post too";
}

TEST_F(RemoteLogging, NothingLoggedWhilePostingIsPostedThoughTheAddressCannotBeMade) {
    initialize("-bad-");
    remoteLog->mockLogSampler(drawing(0));
    phone.capture.log().error(LogTag::network, "x");
    EXPECT_THAT(posts(), IsEmpty());
    phone.capture.expectLines(
        {errorLine(LogTag::network, "x"),
         errorLine(LogTag::network, R"(Unexpected error while posting log ["error": "Invalid url."])")});
}

TEST_F(RemoteLogging, BeforeADataCentreIsKnownALineIsDropped) {
    client = phone.makeClient();
    remoteLog->initialize(client, phone.makeNetworkState(), {"p1", "b1"});
    phone.capture.log().error(LogTag::network, "x");
    EXPECT_THAT(posts(), IsEmpty());
    phone.capture.expectLines(
        {errorLine(LogTag::network, "x"),
         errorLine(LogTag::network,
                   R"(Unexpected error while posting log ["error": "Brand DC is not present."])")});
}

TEST_F(RemoteLogging, InfoLinesAreNotPosted) {
    initialize();
    phone.capture.log().setAllowedTags({LogTag::network});
    phone.capture.log().info(LogTag::network, "x");
    EXPECT_THAT(posts(), IsEmpty());
}

TEST_F(RemoteLogging, ThreadsMayPostWhileTheProjectChanges) {
    initialize();
    remoteLog->mockLogSampler(drawing(21));
    std::thread changing([&] {
        for (int i = 0; i < 200; ++i) {
            remoteLog->initialize(client, nullptr, {"p2", "b2"});
            remoteLog->setSessionData({"dc", std::to_string(i)});
        }
    });
    for (int i = 0; i < 200; ++i) {
        remoteLog->post(LogLevel::error, LogTag::network, "x", {}, false);
        (void)remoteLog->generateLog("x", LogTag::network, {});
    }
    changing.join();
    EXPECT_THAT(posts(), IsEmpty());
}

}  // namespace
}  // namespace mireth
