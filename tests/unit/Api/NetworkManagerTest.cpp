#include "PrivateSide/Api/NetworkManager.hpp"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "PrivateSide/Api/Models/SrSessionModels.hpp"
#include "support/ApiPhone.hpp"

namespace mireth {
namespace {

using test::ApiPhone;
using test::errorLine;
using test::FakeHttpClient;
using test::infoLine;
using test::LogLine;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* url = "https://h.test/path";
constexpr const char* body = R"({"status":"SUCCESS"})";

class Network : public testing::Test {
  protected:
    ApiResponseResult<SrCloseSessionResponse> get() {
        return phone.await(phone.network->get<SrCloseSessionResponse>(url));
    }
    ApiResponseResult<SrCloseSessionResponse> getAnsweredBy(platform::HttpResult answer) {
        phone.http->answerAll(std::move(answer));
        return get();
    }
    static std::vector<LogLine> headerLines() {
        return {infoLine(LogTag::network, R"(x-transaction-id response header ["headerValue": "T1"])"),
                infoLine(LogTag::network, R"(x-request-id response header ["headerValue": "R1"])")};
    }

    ApiPhone phone{ApiPhone::defaultInformation(), {}, {LogTag::network}};
};

TEST_F(Network, ASuccessIsTheDecodedBodyAndTheHeaders) {
    const auto result = getAnsweredBy(FakeHttpClient::response(200, body));
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->data.status, SrResponseStatus::success);
    EXPECT_EQ(result->headers, FakeHttpClient::bothHeaders());
    phone.capture.expectLines(headerLines());
}

TEST_F(Network, EveryStatusBelow300IsASuccess) {
    for (const int status : {-1, 0, 100, 101, 199, 200, 201, 299}) {
        EXPECT_TRUE(getAnsweredBy(FakeHttpClient::response(status, body)).has_value()) << status;
        phone.capture.expectLines(headerLines());
    }
}

TEST_F(Network, AStatusFrom300OnFailsAndItsBodyIsNotRead) {
    for (const int status : {300, 301, 304, 400, 404, 500, 599, 999}) {
        const auto result = getAnsweredBy(FakeHttpClient::response(status, body));
        ASSERT_FALSE(result.has_value()) << status;
        EXPECT_EQ(result.error(), ApiError::requestFailed);
        phone.capture.expectLines(
            {errorLine(LogTag::network, R"(Request failed. ["url": "https://h.test/path", "statusCode": ")" +
                                            std::to_string(status) + R"(", "transactionId": "T1"])")});
    }
}

TEST_F(Network, AFailureWithoutATransactionIdShowsNil) {
    EXPECT_FALSE(getAnsweredBy(FakeHttpClient::response(500, "", {})).has_value());
    phone.capture.expectLines({errorLine(
        LogTag::network,
        R"(Request failed. ["url": "https://h.test/path", "statusCode": "500", "transactionId": "nil"])")});
}

TEST_F(Network, HeadersAreFoundWhateverTheirCase) {
    EXPECT_TRUE(getAnsweredBy(
                    FakeHttpClient::response(200, body, {{"X-Transaction-ID", "T1"}, {"X-REQUEST-ID", "R1"}}))
                    .has_value());
    phone.capture.expectLines(headerLines());
}

TEST_F(Network, EachMissingHeaderIsAnErrorLineOfEverySuccess) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(getAnsweredBy(FakeHttpClient::response(200, body, {})).has_value());
        phone.capture.expectLines({errorLine(LogTag::network, "x-transaction-id response header not found"),
                                   errorLine(LogTag::network, "x-request-id response header not found")});
    }
    EXPECT_TRUE(getAnsweredBy(FakeHttpClient::response(200, body, {{"x-transaction-id", "T1"}})).has_value());
    phone.capture.expectLines(
        {headerLines()[0], errorLine(LogTag::network, "x-request-id response header not found")});
}

TEST_F(Network, AnEmpty204IsADecodingError) {
    const auto result = getAnsweredBy(FakeHttpClient::response(204, ""));
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), ApiError::decodingError);
    const auto lines = phone.capture.take();
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_EQ(lines[2].level, LogLevel::error);
    EXPECT_THAT(lines[2].text, testing::StartsWith("JSON decoding failed [\"error\": "));
}

TEST_F(Network, AnAnswerThatIsNotHttpIsAnInvalidResponse) {
    platform::UrlResponse response;
    response.isHttp = false;
    response.typeName = "FileResponse";
    response.body = body;
    const auto result = getAnsweredBy(response);
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), ApiError::invalidResponse);
    phone.capture.expectLines({errorLine(
        LogTag::network,
        R"(Invalid response type received. ["url": "https://h.test/path", "responseType": "FileResponse", )"
        R"("transactionId": "00000000-0000-4000-8000-000000000001"])")});
}

TEST_F(Network, ATransportFailureIsANetworkError) {
    const auto result = getAnsweredBy(FakeHttpClient::failure("cut off"));
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), ApiError::networkError);
    phone.capture.expectLines({errorLine(
        LogTag::network,
        R"(Network request failed ["error": "cut off", "requestDetails": "GET https://h.test/path", )"
        R"("transactionId": "00000000-0000-4000-8000-000000000001"])")});
}

TEST_F(Network, AnAddressThatCannotBeReadSendsNothing) {
    const auto result = phone.await(phone.network->get<SrCloseSessionResponse>("no address"));
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error(), ApiError::invalidURL);
    EXPECT_THAT(phone.http->requests(), IsEmpty());
    phone.capture.expectLines({errorLine(LogTag::network, R"(Invalid URL. ["url": "no address"])")});
}

TEST_F(Network, EachOperationHasItsMethodAndBody) {
    phone.http->answerAll(FakeHttpClient::response(200, body));
    const Json json = Json::parse(R"({"a":1})");
    (void)phone.await(phone.network->get<SrCloseSessionResponse>(url, {{"q", "1"}}));
    EXPECT_EQ(phone.lastRequest().method, "GET");
    EXPECT_EQ(phone.lastRequest().url, "https://h.test/path?q=1");
    EXPECT_EQ(phone.lastRequest().body, std::nullopt);
    (void)phone.await(phone.network->post<SrCloseSessionResponse>(url, &json));
    EXPECT_EQ(phone.lastRequest().method, "POST");
    EXPECT_EQ(phone.lastRequest().body, R"({"a":1})");
    (void)phone.await(phone.network->post<SrCloseSessionResponse>(url, nullptr));
    EXPECT_EQ(phone.lastRequest().body, std::nullopt);
    (void)phone.await(phone.network->put<SrCloseSessionResponse>(url, &json));
    EXPECT_EQ(phone.lastRequest().method, "PUT");
    EXPECT_EQ(phone.lastRequest().body, R"({"a":1})");
    (void)phone.await(phone.network->postWithUrlEncodedBody<SrCloseSessionResponse>(url, {{"k", "v"}}));
    EXPECT_EQ(phone.lastRequest().method, "POST");
    EXPECT_EQ(phone.lastRequest().body, "k=v");
    (void)phone.await(phone.network->putWithFormData<SrCloseSessionResponse>(url, {}, "chunk"));
    EXPECT_EQ(phone.lastRequest().method, "PUT");
    EXPECT_THAT(phone.lastRequest().body.value_or(""), testing::EndsWith("--\r\n"));
    (void)phone.capture.take();
}

TEST_F(Network, RequestsInARowDifferInTheirTransactionIdOnly) {
    phone.http->answerAll(FakeHttpClient::response(200, body));
    (void)get();
    (void)get();
    const auto requests = phone.http->requests();
    ASSERT_THAT(requests, SizeIs(2));
    EXPECT_NE(test::headerOf(requests[0], "x-transaction-id"),
              test::headerOf(requests[1], "x-transaction-id"));
    EXPECT_EQ(test::headerOf(requests[0], "x-client-id"), "vex-mobile");
    EXPECT_EQ(test::headerOf(requests[1], "x-client-id"), "vex-mobile");
    (void)phone.capture.take();
}

TEST_F(Network, RequestsMayOverlapAndEndInAnyOrder) {
    phone.http->holdAll();
    const auto first = phone.start(phone.network->get<SrCloseSessionResponse>(url));
    const auto second = phone.start(phone.network->get<SrCloseSessionResponse>(url));
    phone.phone.runUntilIdle();
    phone.http->complete(1, FakeHttpClient::response(200, body));
    phone.phone.runUntilIdle();
    EXPECT_FALSE(first->has_value());
    ASSERT_TRUE(second->has_value());
    EXPECT_TRUE((*second)->has_value());
    phone.http->complete(0, FakeHttpClient::response(500, ""));
    phone.phone.runUntilIdle();
    ASSERT_TRUE(first->has_value());
    EXPECT_FALSE((*first)->has_value());
    (void)phone.capture.take();
}

}  // namespace
}  // namespace mireth
