// The fixed names and texts of the network side.
#include <gtest/gtest.h>

#include "PrivateSide/Api/ApiError.hpp"
#include "PrivateSide/Api/HeaderNames.hpp"
#include "PrivateSide/Api/HttpMethod.hpp"
#include "PrivateSide/Api/UrlParser.hpp"

namespace mireth {
namespace {

TEST(ApiError, Descriptions) {
    EXPECT_EQ(description(ApiError::brandDcIsNotPresent), "Brand DC is not present.");
    EXPECT_EQ(description(ApiError::invalidURL), "Invalid url.");
    EXPECT_EQ(description(ApiError::requestFailed), "Request failed.");
    EXPECT_EQ(description(ApiError::invalidResponse), "Invalid response.");
    EXPECT_EQ(description(ApiError::encodingError), "Encoding error.");
    EXPECT_EQ(description(ApiError::decodingError), "Decoding error.");
    EXPECT_EQ(description(ApiError::networkError), "Network error.");
    EXPECT_EQ(description(ApiError::internalInconsistency), "Internal inconsistency");
}

TEST(ApiError, CasesAreInOrder) {
    EXPECT_EQ(static_cast<int>(ApiError::brandDcIsNotPresent), 0);
    EXPECT_EQ(static_cast<int>(ApiError::encodingError), 4);
    EXPECT_EQ(static_cast<int>(ApiError::internalInconsistency), 7);
}

TEST(HttpMethod, RawValuesAndBack) {
    EXPECT_EQ(rawValue(HttpMethod::get), "GET");
    EXPECT_EQ(rawValue(HttpMethod::post), "POST");
    EXPECT_EQ(rawValue(HttpMethod::put), "PUT");
    EXPECT_EQ(rawValue(HttpMethod::del), "DELETE");
    EXPECT_EQ(httpMethodFromRawValue("GET"), HttpMethod::get);
    EXPECT_EQ(httpMethodFromRawValue("DELETE"), HttpMethod::del);
}

TEST(HttpMethod, OnlyTheUpperCaseSpellingsCount) {
    for (const char* text : {"", "get", "Post", "PATCH", "GET "}) {
        EXPECT_EQ(httpMethodFromRawValue(text), std::nullopt) << text;
    }
}

TEST(HeaderNames, AreTheTrackingHeaders) {
    EXPECT_EQ(header_names::transactionId, "x-transaction-id");
    EXPECT_EQ(header_names::requestId, "x-request-id");
    EXPECT_EQ(header_names::clientId, "x-client-id");
    EXPECT_EQ(header_names::clientIdValue, "vex-mobile");
}

TEST(UrlParser, TheDataCentreIsTheTextBeforeTheFirstDot) {
    EXPECT_EQ(UrlParser::extractBrandDc("us-west.example.com"), "us-west");
    EXPECT_EQ(UrlParser::extractBrandDc("US_WEST"), "US_WEST");
    EXPECT_EQ(UrlParser::extractBrandDc(""), "");
    EXPECT_EQ(UrlParser::extractBrandDc(".x"), "");
}

TEST(UrlParser, OnlyAnEmptyPathOrOneWithASlashMayFollowAHost) {
    EXPECT_TRUE(UrlParser::mayFollowHost(""));
    EXPECT_TRUE(UrlParser::mayFollowHost("/x"));
    EXPECT_FALSE(UrlParser::mayFollowHost("@evil/"));
    EXPECT_FALSE(UrlParser::mayFollowHost("port/"));
}

}  // namespace
}  // namespace mireth
