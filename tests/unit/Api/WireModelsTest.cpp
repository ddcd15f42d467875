#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "PrivateSide/Api/JSONCodec.hpp"
#include "PrivateSide/Api/Models/PostLogModels.hpp"
#include "PrivateSide/Api/Models/SrConfigurationResponse.hpp"
#include "PrivateSide/Api/Models/SrSessionModels.hpp"

namespace mireth {
namespace {

TEST(WireModels, CreateSessionBody) {
    SrCreateSessionRequestBody body;
    body.brandId = "b1";
    body.brandDc = "dc";
    body.projectId = "p1";
    EXPECT_EQ(jsonText(toJson(body)),
              R"({"brandId":"b1","brandDc":"dc","projectId":"p1","isTestSession":false})");
}

TEST(WireModels, CloseSessionBody) {
    EXPECT_EQ(jsonText(toJson(SrCloseSessionRequestBody{"b1", "p1"})),
              R"({"brandId":"b1","projectId":"p1"})");
}

TEST(WireModels, ChunkInfo) {
    SrChunkInfo info;
    info.brandId = "b1";
    info.brandDc = "dc";
    info.projectId = "p1";
    info.sessionId = "S1";
    info.chunkNumber = 4;
    info.chunkTimestamp = 1700000000123;
    EXPECT_EQ(jsonText(toJson(info)),
              R"({"brandId":"b1","brandDc":"dc","projectId":"p1","sessionId":"S1","chunkNumber":4,)"
              R"("playbackDataVersion":1,"chunkTimestamp":1700000000123})");
}

TEST(WireModels, ResponseStatuses) {
    EXPECT_EQ(rawValue(SrResponseStatus::success), "SUCCESS");
    EXPECT_EQ(rawValue(SrResponseStatus::throttled), "THROTTLED");
    EXPECT_EQ(rawValue(SrResponseStatus::error), "ERROR");
    for (const auto status :
         {SrResponseStatus::success, SrResponseStatus::throttled, SrResponseStatus::error}) {
        const auto decoded =
            decodeModel<SrCloseSessionResponse>(R"({"status":")" + std::string(rawValue(status)) + R"("})");
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ(decoded->status, status);
    }
}

TEST(WireModels, AnUnknownStatusDoesNotDecode) {
    for (const char* text : {R"({"status":"success"})", R"({"status":""})", R"({"status":1})",
                             R"({"status":null})", R"({})", R"([])", R"("SUCCESS")", R"(null)"}) {
        EXPECT_FALSE(decodeModel<SrCloseSessionResponse>(text).has_value()) << text;
    }
}

constexpr const char* sessionText =
    R"({"status":"SUCCESS","sessionInfo":{"sessionId":"S1","sessionStartTime":"2024-05-01T10:20:30.123Z",)"
    R"("creationDataCenter":"dc","isTestSession":true},"unknown":[1]})";

TEST(WireModels, SessionResponse) {
    const auto response = decodeModel<SrSessionResponse>(sessionText);
    ASSERT_TRUE(response.has_value()) << response.error();
    EXPECT_EQ(response->status, SrResponseStatus::success);
    EXPECT_EQ(response->sessionInfo.sessionId, "S1");
    EXPECT_EQ(response->sessionInfo.sessionStartTimeISO, "2024-05-01T10:20:30.123Z");
    EXPECT_EQ(response->sessionInfo.creationDataCenter, "dc");
    EXPECT_TRUE(response->sessionInfo.isTestSession);
}

TEST(WireModels, EveryFieldOfASessionIsRequired) {
    for (const char* key : {"sessionId", "sessionStartTime", "creationDataCenter", "isTestSession"}) {
        auto json = nlohmann::json::parse(sessionText);
        json["sessionInfo"].erase(key);
        const auto response = decodeModel<SrSessionResponse>(json.dump());
        ASSERT_FALSE(response.has_value()) << key;
        EXPECT_NE(response.error().find(key), std::string::npos) << response.error();
    }
    for (const char* key : {"status", "sessionInfo"}) {
        auto json = nlohmann::json::parse(sessionText);
        json.erase(key);
        EXPECT_FALSE(decodeModel<SrSessionResponse>(json.dump()).has_value()) << key;
    }
    auto wrongType = nlohmann::json::parse(sessionText);
    wrongType["sessionInfo"]["isTestSession"] = 1;
    EXPECT_FALSE(decodeModel<SrSessionResponse>(wrongType.dump()).has_value());
    wrongType["sessionInfo"] = "S1";
    EXPECT_FALSE(decodeModel<SrSessionResponse>(wrongType.dump()).has_value());
}

TEST(WireModels, ARecordingAnswerWithoutAStatusDecodes) {
    for (const char* text : {"{}", R"({"status":null})"}) {
        const auto response = decodeModel<SrRecordPlaybackResponse>(text);
        ASSERT_TRUE(response.has_value()) << text;
        EXPECT_EQ(response->status, std::nullopt);
    }
    EXPECT_EQ(decodeModel<SrRecordPlaybackResponse>(R"({"status":"THROTTLED"})")->status,
              SrResponseStatus::throttled);
    EXPECT_FALSE(decodeModel<SrRecordPlaybackResponse>(R"({"status":"OTHER"})").has_value());
}

TEST(WireModels, Configuration) {
    const auto configuration = decodeModel<SrConfigurationResponse>(
        R"({"srEnabled":"SR_ENABLED_FOR_MOBILE_ONLY","dataCenter":"dc.x","samplingRate":12.5,)"
        R"("customSignal":[{"a":"b"},{}]})");
    ASSERT_TRUE(configuration.has_value()) << configuration.error();
    EXPECT_EQ(configuration->srEnabled, SREnablement::enabledForMobileOnly);
    EXPECT_EQ(configuration->dataCenter, "dc.x");
    EXPECT_EQ(configuration->samplingRate, 12.5);
    ASSERT_EQ(configuration->customSignal.size(), 2U);
    EXPECT_EQ(configuration->customSignal[0].at("a"), "b");
}

TEST(WireModels, AConfigurationWithoutEnablementDecodes) {
    for (const char* text :
         {R"({"dataCenter":"dc","samplingRate":100,"customSignal":[]})",
          R"({"srEnabled":null,"dataCenter":"dc","samplingRate":100,"customSignal":[]})"}) {
        const auto configuration = decodeModel<SrConfigurationResponse>(text);
        ASSERT_TRUE(configuration.has_value()) << text;
        EXPECT_EQ(configuration->srEnabled, std::nullopt);
    }
}

TEST(WireModels, AConfigurationThatLacksAnythingElseOrHasAnUnknownEnablementDoesNotDecode) {
    for (const char* text :
         {R"({"samplingRate":100,"customSignal":[]})", R"({"dataCenter":"dc","customSignal":[]})",
          R"({"dataCenter":"dc","samplingRate":100})",
          R"({"dataCenter":"dc","samplingRate":"100","customSignal":[]})",
          R"({"dataCenter":"dc","samplingRate":true,"customSignal":[]})",
          R"({"dataCenter":"dc","samplingRate":1e999,"customSignal":[]})",
          R"({"dataCenter":"dc","samplingRate":100,"customSignal":[{"a":1}]})",
          R"({"dataCenter":"dc","samplingRate":100,"customSignal":{}})",
          R"({"srEnabled":"SR_NEW","dataCenter":"dc","samplingRate":100,"customSignal":[]})",
          R"({"srEnabled":1,"dataCenter":"dc","samplingRate":100,"customSignal":[]})"}) {
        EXPECT_FALSE(decodeModel<SrConfigurationResponse>(text).has_value()) << text;
    }
}

TEST(WireModels, Enablements) {
    EXPECT_EQ(rawValue(SREnablement::unknown), "SR_UNKNOWN");
    EXPECT_EQ(rawValue(SREnablement::disabled), "SR_DISABLED");
    EXPECT_EQ(rawValue(SREnablement::enabledForWebOnly), "SR_ENABLED_FOR_WEB_ONLY");
    EXPECT_EQ(rawValue(SREnablement::enabledForMobileOnly), "SR_ENABLED_FOR_MOBILE_ONLY");
    EXPECT_EQ(rawValue(SREnablement::enabledForWebAndMobile), "SR_ENABLED_FOR_WEB_AND_MOBILE");
}

TEST(WireModels, TheConfigurationInWords) {
    SrConfigurationResponse configuration;
    configuration.dataCenter = "dc";
    configuration.samplingRate = 100;
    EXPECT_EQ(description(configuration),
              "SrConfigurationResponse(srEnabled: nil, dataCenter: dc, samplingRate: 100, customSignal: [])");
    configuration.srEnabled = SREnablement::disabled;
    configuration.samplingRate = 0.5;
    configuration.customSignal = {{{"a", "b"}}};
    EXPECT_EQ(description(configuration),
              "SrConfigurationResponse(srEnabled: SR_DISABLED, dataCenter: dc, "
              "samplingRate: 0.5, customSignal: [{\"a\":\"b\"}])");
}

TEST(WireModels, PostLogResponse) {
    EXPECT_EQ(decodeModel<PostLogResponse>(R"({"status":"Success"})")->status,
              PostLogResponseStatus::Success);
    EXPECT_EQ(decodeModel<PostLogResponse>(R"({"status":"Failure"})")->status,
              PostLogResponseStatus::Failure);
    EXPECT_FALSE(decodeModel<PostLogResponse>(R"({"status":"success"})").has_value());
}

TEST(WireModels, ADepthBombIsAReasonAndNothingElse) {
    for (const std::string& bomb :
         {std::string(1'000'000, '['), R"({"status":)" + std::string(900'000, '{'),
          R"({"x":)" + std::string(200, '[') + std::string(200, ']') + R"(,"status":"SUCCESS"})"}) {
        EXPECT_FALSE(decodeModel<SrCloseSessionResponse>(bomb).has_value());
    }
}

}  // namespace
}  // namespace mireth
