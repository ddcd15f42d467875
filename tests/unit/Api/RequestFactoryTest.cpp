#include "PrivateSide/Api/RequestFactory.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "MirethVex/Headless/SeededRandomSource.hpp"
#include "support/ApiPhone.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::FixedRandomSource;
using test::headerOf;
using test::LogCapture;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::Pair;
using tests::MemoryFileManager;

constexpr const char* url = "https://h.test/path";
constexpr const char* firstId = "00000000-0000-4000-8000-000000000001";
constexpr const char* secondId = "00000000-0000-4000-8000-000000000002";

std::shared_ptr<const Json> json(const char* text) {
    return std::make_shared<const Json>(Json::parse(text));
}

class Requests : public testing::Test {
  protected:
    LogCapture capture;
    std::shared_ptr<MemoryFileManager> files = std::make_shared<MemoryFileManager>();
    RequestFactory factory{capture.log(), files, std::make_shared<FixedRandomSource>()};
};

TEST_F(Requests, WithoutABodyHaveTheTrackingHeadersOnly) {
    const auto request = factory.createRequest(url, HttpMethod::get, nullptr, {}).value();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.url, url);
    EXPECT_EQ(request.body, std::nullopt);
    EXPECT_THAT(request.headers,
                ElementsAre(Pair("x-transaction-id", firstId), Pair("x-client-id", "vex-mobile")));
    EXPECT_EQ(request.idleTimeout, std::chrono::seconds(60));
}

TEST_F(Requests, AJsonBodyComesWithItsContentType) {
    const auto body = json(R"({"b":1,"a":"x"})");
    const auto request = factory.createRequest(url, HttpMethod::put, body.get(), {}).value();
    EXPECT_EQ(request.method, "PUT");
    EXPECT_EQ(request.body, R"({"b":1,"a":"x"})");
    EXPECT_EQ(headerOf(request, "Content-Type"), "application/json; charset=UTF-8");
}

TEST_F(Requests, AJsonBodyThatCannotBeEncodedIsNoRequest) {
    Json body = Json::object();
    body["x"] = std::numeric_limits<double>::infinity();
    EXPECT_EQ(factory.createRequest(url, HttpMethod::post, &body, {}).error(), ApiError::encodingError);
    EXPECT_EQ(capture.take().size(), 1U);
}

TEST_F(Requests, AFormBodyIsEncodedByteForByte) {
    const auto request =
        factory
            .createRequest(url, HttpMethod::post,
                           TextPairs{{"Message", "{\"a\":\"b&c=d\"}"}, {"LevelName", "error"}}, {})
            .value();
    EXPECT_EQ(request.body, "Message=%7B%22a%22:%22b&c=d%22%7D&LevelName=error");
    EXPECT_EQ(headerOf(request, "Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(factory.createRequest(url, HttpMethod::post, TextPairs{}, {})->body, "");
}

TEST_F(Requests, CarryTheirOwnQueryItemsThenTheDefaultsWithoutDeDuplication) {
    factory.setDefaultParameters({{"d1", "1"}, {"action", "default"}});
    const auto request =
        factory.createRequest(url, HttpMethod::get, nullptr, {{"action", "own"}, {"b", "2"}});
    EXPECT_EQ(request->url, "https://h.test/path?action=own&b=2&d1=1&action=default");
}

TEST_F(Requests, DefaultParametersAreReplacedWholesale) {
    factory.setDefaultParameters({{"a", "1"}, {"b", "2"}});
    factory.setDefaultParameters({{"c", "3"}});
    EXPECT_EQ(factory.createRequest(url, HttpMethod::get, nullptr, {})->url, "https://h.test/path?c=3");
}

TEST_F(Requests, QueryItemsReplaceTheQueryOfTheAddress) {
    EXPECT_EQ(factory.createRequest("https://h.test/p?old=1", HttpMethod::get, nullptr, {{"new", "2"}})->url,
              "https://h.test/p?new=2");
}

TEST_F(Requests, QueryItemsAreEscaped) {
    EXPECT_EQ(factory.createRequest(url, HttpMethod::get, nullptr, {{"k k", "a&b=c#d é"}})->url,
              "https://h.test/path?k%20k=a%26b=c%23d%20%C3%A9");
}

TEST_F(Requests, AnAddressThatCannotBeReadIsRefusedAndLogged) {
    for (const char* bad : {"", "no scheme", "https://", "/path", "https://a b/", "https://h.test:port/",
                            "https://h.test:80x/", "https://a@b@c/"}) {
        EXPECT_EQ(factory.createRequest(bad, HttpMethod::get, nullptr, {}).error(), ApiError::invalidURL)
            << bad;
        capture.expectLines(
            {errorLine(LogTag::network, std::string(R"(Invalid URL. ["url": ")") + bad + R"("])")});
    }
}

TEST_F(Requests, EveryBodyKindRefusesABadAddress) {
    EXPECT_EQ(factory.createRequest("bad", HttpMethod::post, TextPairs{}, {}).error(), ApiError::invalidURL);
    EXPECT_EQ(factory.createFormDataRequest("bad", {}, "chunk", HttpMethod::put).error(),
              ApiError::invalidURL);
    EXPECT_EQ(capture.take().size(), 2U);
}

TEST_F(Requests, IdentifiersAndBoundariesAreFreshUpperCaseUuids) {
    const RequestFactory seeded(capture.log(), files, std::make_shared<headless::SeededRandomSource>(5));
    const std::string uuid = "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}";
    std::set<std::string> seen;
    for (int i = 0; i < 10; ++i) {
        const auto request = seeded.createFormDataRequest(url, {}, "chunk", HttpMethod::put).value();
        const std::string transaction = headerOf(request, "x-transaction-id").value();
        EXPECT_THAT(transaction, MatchesRegex(uuid));
        EXPECT_THAT(headerOf(request, "Content-Type").value(),
                    MatchesRegex("multipart/form-data; boundary=" + uuid));
        EXPECT_EQ(headerOf(request, "x-client-id"), "vex-mobile");
        seen.insert(transaction);
        seen.insert(headerOf(request, "Content-Type").value().substr(30));
    }
    EXPECT_EQ(seen.size(), 20U);
}

TEST_F(Requests, AMultipartBodyIsExactByteForByte) {
    files->files["/store/S1-0.mp4"] = std::string("vi\0deo\r\n", 8);
    FormData data;
    data.emplace_back("timeline", json(R"([{"timestamp":1}])"));
    data.emplace_back("info", json(R"({"a":"b"})"));
    data.emplace_back("playback", MediaData{"/store/S1-0.mp4", "video/mp4"});
    const auto request = factory.createFormDataRequest(url, data, "chunk", HttpMethod::put).value();
    const std::string boundary = secondId;
    const std::string expected =
        "--" + boundary +
        "\r\n"
        "Content-Disposition: form-data; name=\"chunk[timeline]\"\r\n"
        "\r\n"
        "[{\"timestamp\":1}]\r\n"
        "--" +
        boundary +
        "\r\n"
        "Content-Disposition: form-data; name=\"chunk[info]\"\r\n"
        "\r\n"
        "{\"a\":\"b\"}\r\n"
        "--" +
        boundary +
        "\r\n"
        "Content-Disposition: form-data; name=\"chunk[playback]\"; filename=\"S1-0.mp4\"\r\n"
        "Content-Type: video/mp4\r\n"
        "\r\n" +
        std::string("vi\0deo\r\n", 8) +
        "\r\n"
        "--" +
        boundary + "--\r\n";
    EXPECT_EQ(request.body, expected);
    EXPECT_EQ(request.method, "PUT");
    EXPECT_EQ(headerOf(request, "Content-Type"), "multipart/form-data; boundary=" + boundary);
}

TEST_F(Requests, AMultipartBodyWithoutPartsIsTheLastBoundaryAlone) {
    EXPECT_EQ(factory.buildFormDataBody({}, "chunk", "B"), "--B--\r\n");
}

TEST_F(Requests, AMultipartRequestCarriesTheDefaultQueryItemsOnly) {
    factory.setDefaultParameters({{"d", "1"}});
    EXPECT_EQ(factory.createFormDataRequest("https://h.test/p?own=1", {}, "chunk", HttpMethod::put)->url,
              "https://h.test/p?d=1");
}

TEST_F(Requests, AFileThatCannotBeReadIsAnEncodingErrorThatNamesTheFile) {
    FormData data;
    data.emplace_back("info", json("{}"));
    data.emplace_back("playback", MediaData{"/store/S1-0.mp4", "video/mp4"});
    EXPECT_EQ(factory.createFormDataRequest(url, data, "chunk", HttpMethod::put).error(),
              ApiError::encodingError);
    capture.expectLines({errorLine(LogTag::network, R"(Encoding error. ["file": "S1-0.mp4"])")});
}

TEST_F(Requests, AJsonPartThatCannotBeEncodedFailsTheWhole) {
    Json bad = Json::array();
    bad.push_back(std::numeric_limits<double>::quiet_NaN());
    FormData data;
    data.emplace_back("timeline", std::make_shared<const Json>(bad));
    EXPECT_EQ(factory.createFormDataRequest(url, data, "chunk", HttpMethod::put).error(),
              ApiError::encodingError);
    EXPECT_EQ(capture.take().size(), 1U);
}

TEST_F(Requests, AFileNameCannotEndItsQuotes) {
    files->files["/store/a\"b\r\nc.mp4"] = "v";
    FormData data;
    data.emplace_back("playback", MediaData{"/store/a\"b\r\nc.mp4", "video/mp4"});
    EXPECT_THAT(factory.buildFormDataBody(data, "chunk", "B").value(),
                testing::HasSubstr("filename=\"a%22b%0D%0Ac.mp4\"\r\n"));
}

}  // namespace
}  // namespace mireth
