// What becomes of requests that there is no memory for. A program of its own: see ScarceMemory.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "HttpResults.hpp"
#include "RawServer.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "platforms/linux/network/CurlTransfer.hpp"
#include "support/ScarceMemory.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::platform {
namespace {

using test::Connection;
using test::errorOf;
using test::RawServer;
using test::requestTo;
using test::ScarceMemory;
using test::sendAndWait;

constexpr std::size_t scarce = 4096;
constexpr std::string_view emptyAnswer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

/// Sends `request` after another one has left the client's thread short of memory, which is back with the
/// result.
HttpResult resultInScarceMemory(CurlHttpClient& client, const RawServer& server, HttpRequest request) {
    std::optional<ScarceMemory> scarceMemory;
    std::promise<void> isScarce;
    const AnyCancellable first = client.send(requestTo(server.origin()), [&](const HttpResult&) {
        scarceMemory.emplace(scarce);
        isScarce.set_value();
    });
    isScarce.get_future().wait();
    std::promise<HttpResult> promise;
    const AnyCancellable second = client.send(std::move(request), [&](HttpResult result) {
        scarceMemory.reset();
        promise.set_value(std::move(result));
    });
    return promise.get_future().get();
}

TEST(CurlTransferMemory, ABodyThatThereIsNoMemoryForFailsTheTransferAndThrowsNothingThroughLibcurl) {
    RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 500000\r\n\r\n" + std::string(500000, 'x'));
    });
    CurlTransfer transfer(requestTo(server.origin()), CurlSettings{});
    ASSERT_EQ(transfer.refusal(), "");
    CURLcode code = CURLE_OK;
    {
        const ScarceMemory scarceMemory(std::size_t{64} * 1024);
        EXPECT_NO_THROW(code = curl_easy_perform(transfer.handle()));
    }
    EXPECT_EQ(code, CURLE_WRITE_ERROR);
    EXPECT_NE(errorOf(transfer.result(code)), "");
}

TEST(CurlHttpClientMemory, ARequestThatThereIsNoMemoryForFailsAndTheNextIsSent) {
    const RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write(emptyAnswer);
    });
    CurlHttpClient client;
    HttpRequest request = requestTo(server.origin());
    request.headers = {{"x-long", std::string(scarce, 'x')}};
    EXPECT_EQ(errorOf(resultInScarceMemory(client, server, request)), "no memory");
    EXPECT_TRUE(sendAndWait(client, requestTo(server.origin())).has_value());
}

TEST(CurlHttpClientMemory, AnAnswerThatThereIsNoMemoryForIsAFailureAndTheNextIsReceived) {
    const RawServer server([](Connection& connection) {
        const std::string head = connection.readRequest();
        connection.write(head.starts_with("GET /long")
                             ? "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\nx-long: " +
                                   std::string(scarce, 'x') + "\r\n\r\n"
                             : std::string(emptyAnswer));
    });
    CurlHttpClient client;
    EXPECT_EQ(errorOf(resultInScarceMemory(client, server, requestTo(server.origin() + "/long"))),
              "no memory");
    EXPECT_TRUE(sendAndWait(client, requestTo(server.origin())).has_value());
}

}  // namespace
}  // namespace mireth::platform
