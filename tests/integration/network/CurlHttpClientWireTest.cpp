// What the HTTP client says on the wire, and what it makes of odd but lawful answers.
#include <stdlib.h>

#include "HttpResults.hpp"
#include "RawServer.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::platform {

using test::Connection;
using test::RawServer;
using test::requestTo;
using test::sendAndWait;

namespace {

constexpr std::string_view emptyAnswer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";

/// The bytes of `request` as a server sees them.
std::string bytesOf(HttpRequest request, std::string_view host = "127.0.0.1") {
    std::string seen;
    std::string port;
    {
        RawServer server([&](Connection& connection) {
            seen = connection.readRequest();
            connection.write(emptyAnswer);
        });
        port = std::to_string(server.port());
        request.url = server.origin("http", host) + request.url;
        CurlHttpClient client;
        const auto result = sendAndWait(client, request);
        EXPECT_TRUE(result) << result.error().description;
    }
    const std::size_t at = seen.find(":" + port);
    return at == std::string::npos ? seen : seen.replace(at, port.size() + 1, ":PORT");
}

HttpResult answerTo(std::string_view answer, std::string method = "GET") {
    RawServer server([&](Connection& connection) {
        connection.readRequest();
        connection.write(answer);
    });
    CurlHttpClient client;
    HttpRequest request = requestTo(server.origin());
    request.method = std::move(method);
    return sendAndWait(client, request);
}

}  // namespace

TEST(CurlHttpClientWire, SendsWhatWasAskedForAndNothingElse) {
    HttpRequest request = requestTo("/a/%2F?x=1&y=%26");
    request.headers = {{"x-client-id", "c"}, {"X-Empty", ""}, {"x-client-id", "d"}};
    EXPECT_EQ(bytesOf(request),
              "GET /a/%2F?x=1&y=%26 HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nx-client-id: c\r\nX-Empty:\r\n"
              "x-client-id: d\r\n\r\n");
    request = requestTo("/");
    request.method = "POST";
    request.headers = {{"Content-Type", "text/plain"}};
    request.body = "a=b";
    EXPECT_EQ(bytesOf(request),
              "POST / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nContent-Type: text/plain\r\nContent-Length: "
              "3\r\n\r\na=b");
}

TEST(CurlHttpClientWire, EveryMethodIsSentAsWritten) {
    for (const char* method : {"DELETE", "OPTIONS", "PURGE", "get"}) {
        HttpRequest request = requestTo("/");
        request.method = method;
        EXPECT_EQ(bytesOf(request), std::string(method) + " / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\n\r\n");
    }
    HttpRequest request = requestTo("/");
    request.method = "PUT";
    EXPECT_EQ(bytesOf(request), "PUT / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nContent-Length: 0\r\n\r\n");
    request.method = "DELETE";
    request.body = "x";
    EXPECT_EQ(bytesOf(request), "DELETE / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nContent-Length: 1\r\n\r\nx");
}

TEST(CurlHttpClientWire, ALargeBodyGoesOutWithoutAskingFirst) {
    HttpRequest request = requestTo("/");
    request.method = "POST";
    request.body = std::string(3 * 1024 * 1024, 'b');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(bytesOf(request),
              "POST / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nContent-Length: 3145728\r\n\r\n" + *request.body);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900))
        << "a client that waits for \"100 Continue\" gives up after a second";
}

TEST(CurlHttpClientWire, NamesBelowLocalhostAreLoopback) {
    EXPECT_EQ(bytesOf(requestTo("/"), "us-west.localhost"),
              "GET / HTTP/1.1\r\nHost: us-west.localhost:PORT\r\n\r\n");
    EXPECT_EQ(bytesOf(requestTo("/"), "LOCALHOST"), "GET / HTTP/1.1\r\nHost: LOCALHOST:PORT\r\n\r\n");
}

TEST(CurlHttpClientWire, ProxiesOfTheEnvironmentAreNotUsed) {
    RawServer proxy([](Connection& connection) { connection.write(emptyAnswer); });
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
        setenv(name, proxy.origin().c_str(), 1);
    }
    EXPECT_EQ(bytesOf(requestTo("/")), "GET / HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\n\r\n");
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
        unsetenv(name);
    }
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(CurlHttpClientWire, CookiesAreNotSentBack) {
    int requests = 0;
    std::string second;
    RawServer server([&](Connection& connection) {
        for (; requests < 2; ++requests) {
            second = connection.readRequest();
            connection.write("HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nContent-Length: 0\r\n\r\n");
        }
    });
    CurlHttpClient client;
    ASSERT_TRUE(sendAndWait(client, requestTo(server.origin())));
    ASSERT_TRUE(sendAndWait(client, requestTo(server.origin())));
    EXPECT_FALSE(test::contains(second, "ookie"));
    EXPECT_EQ(server.connections(), 1) << "the connection is used again";
}

TEST(CurlHttpClientWire, AConnectionTheServerClosedMeanwhileIsReplaced) {
    RawServer server([&](Connection& connection) {
        connection.readRequest();
        connection.write(emptyAnswer);
    });
    CurlHttpClient client;
    for (int i = 0; i < 3; ++i) {
        const auto result = sendAndWait(client, requestTo(server.origin()));
        ASSERT_TRUE(result) << result.error().description;
    }
}

TEST(CurlHttpClientWire, TheLastValueOfAFieldCounts) {
    const auto result =
        answerTo("HTTP/1.1 200 OK\r\nX-A: 1\r\nx-a:   2  \r\nX-B:\r\nContent-Length: 0\r\n\r\n");
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->headers.find("X-a")->second, "2");
    EXPECT_EQ(result->headers.find("x-b")->second, "");
}

TEST(CurlHttpClientWire, InterimAnswersAreNotTheAnswer) {
    const auto result = answerTo(
        "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nX-Hint: early\r\n\r\n"
        "HTTP/1.1 201 Created\r\nX-Final: yes\r\nContent-Length: 2\r\n\r\nok");
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->status, 201);
    EXPECT_EQ(result->body, "ok");
    EXPECT_FALSE(result->headers.contains("X-Hint"));
    EXPECT_TRUE(result->headers.contains("X-Final"));
}

TEST(CurlHttpClientWire, TrailersAreNoHeaders) {
    const auto result = answerTo(
        "HTTP/1.1 200 OK\r\nX-A: head\r\nTransfer-Encoding: chunked\r\n\r\n"
        "2\r\nok\r\n0\r\nX-A: tail\r\nX-B: tail\r\n\r\n");
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->body, "ok");
    EXPECT_EQ(result->headers.find("X-A")->second, "head");
    EXPECT_FALSE(result->headers.contains("X-B"));
}

TEST(CurlHttpClientWire, AHeadRequestWaitsForNoBody) {
    const auto result = answerTo("HTTP/1.1 200 OK\r\nContent-Length: 99999999\r\n\r\n", "HEAD");
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->headers.find("content-length")->second, "99999999");
    EXPECT_EQ(result->body, "");
}

TEST(CurlHttpClientWire, PackedBodiesAreLeftPacked) {
    const auto result =
        answerTo("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\n\x1f\x8b??");
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->body, "\x1f\x8b??");
}

}  // namespace mireth::platform
