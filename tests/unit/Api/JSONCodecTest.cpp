#include "PrivateSide/Api/JSONCodec.hpp"

#include <gtest/gtest.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "PrivateSide/Api/Models/SrSessionModels.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::LogCapture;

std::string textOf(float value) {
    return jsonText(jsonNumber(value));
}
std::string textOf(double value) {
    return jsonText(jsonNumber(value));
}

TEST(JsonNumber, A32BitFloatIsWrittenInItsShortestForm) {
    EXPECT_EQ(textOf(0.42F), "0.42");
    EXPECT_EQ(textOf(0.1F), "0.1");
    EXPECT_EQ(textOf(1.0F / 3.0F), "0.33333334");
    EXPECT_EQ(textOf(4.4045744F), "4.4045744");
    EXPECT_EQ(textOf(-0.31F), "-0.31");
    EXPECT_EQ(textOf(0.0001F), "0.0001");
}

TEST(JsonNumber, AWholeNumberHasNoFraction) {
    EXPECT_EQ(textOf(450.0F), "450");
    EXPECT_EQ(textOf(780.0), "780");
    EXPECT_EQ(textOf(0.0F), "0");
    EXPECT_EQ(textOf(-3.0), "-3");
    EXPECT_EQ(textOf(16777216.0F), "16777216");
}

TEST(JsonNumber, A64BitFloatIsWrittenInItsShortestForm) {
    EXPECT_EQ(textOf(0.1), "0.1");
    EXPECT_EQ(textOf(1170.5), "1170.5");
    EXPECT_EQ(textOf(1.0 / 3.0), "0.3333333333333333");
}

TEST(JsonNumber, VeryLargeAndVerySmallOnesHaveAnExponent) {
    EXPECT_EQ(textOf(1e300), "1e+300");
    EXPECT_EQ(textOf(3.7329295e19F), "3.7329295e+19");
    EXPECT_EQ(textOf(-1.483246e14F), "-148324600000000");
    EXPECT_EQ(textOf(1e-7F), "1e-07");
}

std::string shortestDigits(float value) {
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::scientific);
    return {std::begin(text), end.ptr};
}

TEST(JsonNumber, EveryFloatReadsBackTheSameAndHasNoDigitTooMany) {
    std::mt19937 engine(3);
    for (int i = 0; i < 200'000; ++i) {
        const auto bits = static_cast<std::uint32_t>(engine());
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (i % 2 == 0) {
            value = static_cast<float>(engine() % 10'000'000) / static_cast<float>(1 + engine() % 100'000);
        }
        if (!std::isfinite(value)) {
            continue;
        }
        const std::string text = textOf(value);
        float back = 0;
        std::from_chars(text.data(), text.data() + text.size(), back);
        ASSERT_EQ(back, value) << text;
        ASSERT_EQ(static_cast<double>(nlohmann::json::parse(text).get<float>()), static_cast<double>(value));
        double widened = 0;
        std::from_chars(text.data(), text.data() + text.size(), widened);
        char again[64];
        const auto end =
            std::to_chars(std::begin(again), std::end(again), widened, std::chars_format::scientific);
        ASSERT_EQ(std::string(std::begin(again), end.ptr), shortestDigits(value)) << text;
    }
}

TEST(JSONCodec, EncodesWithoutWhiteSpaceAndInTheOrderOfTheKeys) {
    LogCapture capture;
    Json json = Json::object();
    json["b"] = 1;
    json["a"] = Json::array({true, nullptr, "x"});
    json["empty"] = Json::object();
    json["none"] = Json::array();
    EXPECT_EQ(JSONCodec(capture.log()).encode(json), R"({"b":1,"a":[true,null,"x"],"empty":{},"none":[]})");
}

TEST(JSONCodec, EscapesTextAndKeys) {
    LogCapture capture;
    Json json = Json::object();
    json["a\"b"] = "c\\d\n\x01 ü";
    EXPECT_EQ(JSONCodec(capture.log()).encode(json), "{\"a\\\"b\":\"c\\\\d\\n\\u0001 ü\"}");
}

TEST(JSONCodec, TextThatIsNotUtf8IsReplaced) {
    LogCapture capture;
    Json json = Json::object();
    json["k\xff"] = "a\xff";
    EXPECT_EQ(JSONCodec(capture.log()).encode(json), "{\"k\xEF\xBF\xBD\":\"a\xEF\xBF\xBD\"}");
}

TEST(JSONCodec, AnInfinityOrNotANumberIsAnEncodingErrorThatIsNamed) {
    for (const float bad : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                            std::numeric_limits<float>::quiet_NaN()}) {
        LogCapture capture;
        Json json = Json::object();
        json["list"] = Json::array();
        json["list"].push_back(Json::object());
        json["list"][0]["x"] = jsonNumber(bad);
        const auto encoded = JSONCodec(capture.log()).encode(json);
        ASSERT_FALSE(encoded.has_value());
        EXPECT_EQ(encoded.error(), ApiError::encodingError);
        capture.expectLines({errorLine(
            LogTag::network,
            R"(JSON encoding failed ["error": "The number at list.0.x is infinite or not a number."])")});
    }
}

TEST(JSONCodec, ADecodingFailureIsLoggedWithItsReason) {
    LogCapture capture;
    const auto decoded = JSONCodec(capture.log()).decode<SrCloseSessionResponse>(R"({"status":"MAYBE"})");
    ASSERT_FALSE(decoded.has_value());
    EXPECT_EQ(decoded.error(), ApiError::decodingError);
    capture.expectLines(
        {errorLine(LogTag::network,
                   R"(JSON decoding failed ["error": "\"status\" has the unknown value \"MAYBE\"."])")});
}

TEST(JSONCodec, FormValuesKeepTheCharactersOfAHost) {
    const std::string kept = "azAZ09-._~!$&'()*+,;=:[]";
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"k", kept}}), "k=" + kept);
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{kept, "v"}}), kept + "=v");
}

TEST(JSONCodec, EveryOtherByteOfAFormValueIsTwoUpperCaseDigits) {
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"a b", "/?#%@\"{}\\^`|<> \n\x7f"}}),
              "a%20b=%2F%3F%23%25%40%22%7B%7D%5C%5E%60%7C%3C%3E%20%0A%7F");
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"k", "é€🟢"}}), "k=%C3%A9%E2%82%AC%F0%9F%9F%A2");
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"k", std::string("\0", 1)}}), "k=%00");
}

TEST(JSONCodec, FormEntriesAreJoinedByAmpersands) {
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({}), "");
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"a", "1"}, {"b", ""}, {"a", "2"}}), "a=1&b=&a=2");
    EXPECT_EQ(JSONCodec::urlEncodeBodyParameters({{"a", "x&b=y"}}), "a=x&b=y");
}

std::string nested(const std::string& open, const std::string& close, std::size_t levels) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) {
        text += open;
    }
    text += "0";
    for (std::size_t i = 0; i < levels; ++i) {
        text += close;
    }
    return text;
}

TEST(UntrustedJson, NestingPastTheLimitIsRefused) {
    EXPECT_NO_THROW((void)parseUntrustedJson(nested("[", "]", 60)));
    EXPECT_THROW((void)parseUntrustedJson(nested("[", "]", 100)), std::exception);
    EXPECT_THROW((void)parseUntrustedJson(nested(R"({"a":)", "}", 100)), std::exception);
    EXPECT_THROW((void)parseUntrustedJson(std::string(1'000'000, '[')), std::exception);
    EXPECT_THROW((void)parseUntrustedJson(nested("[", "]", 500'000)), std::exception);
}

TEST(UntrustedJson, BrokenTextIsRefused) {
    for (const char* text : {"", "{", "nul", "{\"a\":1}x", "\"\xff\"", "1e999", "{'a':1}", "[1,]"}) {
        EXPECT_THROW((void)parseUntrustedJson(text), std::exception) << text;
    }
}

TEST(UntrustedJson, VeryManyKeysAreReadInReasonableTime) {
    std::string text = "{";
    for (int i = 0; i < 100'000; ++i) {
        text += "\"" + std::to_string(i) + "\":0,";
    }
    text += "\"status\":\"SUCCESS\"}";
    LogCapture capture;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(JSONCodec(capture.log()).decode<SrCloseSessionResponse>(text).has_value());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

}  // namespace
}  // namespace mireth
