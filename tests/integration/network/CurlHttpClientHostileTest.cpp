// How the HTTP client stands servers that misbehave.
#include <stdexcept>

#include "HttpResults.hpp"
#include "RawServer.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::platform {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::Connection;
using test::contains;
using test::errorOf;
using test::RawServer;
using test::requestTo;
using test::sendAndWait;

namespace {

/// The result of a request with an idle timeout of one second, and how long it took.
struct Timed {
    HttpResult result;
    std::chrono::steady_clock::duration time;
};

Timed sendImpatiently(const std::string& url, std::optional<std::string> body = {}) {
    CurlHttpClient client;
    HttpRequest request = requestTo(url);
    request.method = body ? "POST" : "GET";
    request.body = std::move(body);
    request.idleTimeout = seconds(1);
    const auto start = std::chrono::steady_clock::now();
    auto result = sendAndWait(client, std::move(request));
    return {std::move(result), std::chrono::steady_clock::now() - start};
}

std::string errorFor(std::function<void(Connection&)> handler) {
    RawServer server([&](Connection& connection) {
        connection.readRequest();
        handler(connection);
    });
    CurlHttpClient client;
    return errorOf(sendAndWait(client, requestTo(server.origin())));
}

}  // namespace

TEST(CurlHttpClientHostile, ARedirectToAnotherHostIsAnAnswerAndNoRequest) {
    RawServer other([](Connection&) {});
    RawServer server([&](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 307 Temporary Redirect\r\nLocation: " + other.origin("http", "localhost") +
                         "/stolen\r\nRefresh: 0; url=" + other.origin() + "\r\nContent-Length: 0\r\n\r\n");
    });
    CurlHttpClient client;
    HttpRequest request = requestTo(server.origin());
    request.method = "POST";
    request.body = "private";
    const auto result = sendAndWait(client, request);
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(result->status, 307);
    EXPECT_EQ(other.connections(), 0);
}

TEST(CurlHttpClientHostile, PlainHttpToAnotherHostIsRefusedWithoutAConnection) {
    RawServer server([](Connection& connection) { connection.write("HTTP/1.1 204 No Content\r\n\r\n"); });
    // The kernel takes 0.0.0.0 to this machine, but it is no loopback address.
    const std::string url = server.origin("http", "0.0.0.0");
    CurlHttpClient strict;
    EXPECT_TRUE(
        contains(errorOf(sendAndWait(strict, requestTo(url))), "only https is spoken with this host"));
    EXPECT_EQ(server.connections(), 0);
    CurlHttpClient lenient({.allowInsecureHttp = true, .extraCaFile = {}, .onEscapedError = {}});
    EXPECT_TRUE(sendAndWait(lenient, requestTo(url)));
    EXPECT_EQ(server.connections(), 1);
}

TEST(CurlHttpClientHostile, ARefusedRequestReachesNobody) {
    RawServer server([](Connection&) {});
    CurlHttpClient client;
    HttpRequest request = requestTo(server.origin());
    request.headers = {{"x", "y\r\nX-Evil: 1"}};
    EXPECT_TRUE(contains(errorOf(sendAndWait(client, request)), "the header field is refused: x"));
    request = requestTo(server.origin());
    request.method = "GET / HTTP/1.1\r\nX: y";
    EXPECT_TRUE(contains(errorOf(sendAndWait(client, request)), "the method is refused"));
    EXPECT_EQ(server.connections(), 0);
}

TEST(CurlHttpClientHostile, AServerThatNeverAnswersTimesOut) {
    RawServer server([](Connection& connection) { connection.waitForClose(); });
    const auto timed = sendImpatiently(server.origin() + "/p?secret");
    EXPECT_EQ(errorOf(timed.result), "GET " + server.origin() + "/p: nothing was sent or received for 1 s");
    EXPECT_GE(timed.time, milliseconds(990));
    EXPECT_LT(timed.time, seconds(10));
}

TEST(CurlHttpClientHostile, AServerThatStopsInTheMiddleTimesOut) {
    RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
        connection.waitForClose();
    });
    EXPECT_TRUE(contains(errorOf(sendImpatiently(server.origin()).result), "nothing was sent or received"));
}

TEST(CurlHttpClientHostile, AServerThatReadsNothingTimesOut) {
    RawServer server([](Connection& connection) {
        while (!connection.isClosing()) {
            connection.pause(milliseconds(10));
        }
    });
    const auto timed = sendImpatiently(server.origin(), std::string(32 * 1024 * 1024, 'b'));
    EXPECT_TRUE(contains(errorOf(timed.result), "nothing was sent or received"));
}

TEST(CurlHttpClientHostile, AHandshakeThatGetsNoAnswerTimesOut) {
    RawServer server([](Connection& connection) { connection.waitForClose(); });
    const auto timed = sendImpatiently(server.origin("https"));
    EXPECT_FALSE(timed.result);
    EXPECT_LT(timed.time, seconds(10));
}

TEST(CurlHttpClientHostile, ASlowAnswerIsWaitedForAsLongAsBytesCome) {
    RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n");
        for (int i = 0; i < 6; ++i) {
            connection.pause(milliseconds(400));
            connection.write("x");
        }
    });
    const auto timed = sendImpatiently(server.origin());
    ASSERT_TRUE(timed.result) << timed.result.error().description;
    EXPECT_EQ(timed.result->body, "xxxxxx");
    EXPECT_GT(timed.time, seconds(2)) << "longer than the idle timeout in all";
}

TEST(CurlHttpClientHostile, AnEndlessBodyIsCutOff) {
    const std::string error = errorFor([](Connection& connection) {
        connection.write("HTTP/1.1 200 OK\r\n\r\n");
        const std::string block(64 * 1024, 'x');
        while (connection.write(block)) {
        }
    });
    EXPECT_TRUE(contains(error, "longer than allowed")) << error;
}

TEST(CurlHttpClientHostile, EndlessHeadersAreCutOff) {
    const std::string error = errorFor([](Connection& connection) {
        connection.write("HTTP/1.1 200 OK\r\n");
        while (connection.write("X-Filler: " + std::string(1000, 'x') + "\r\n")) {
        }
    });
    EXPECT_TRUE(contains(error, "longer than allowed")) << error;
}

TEST(CurlHttpClientHostile, EndlessInterimAnswersAreCutOff) {
    const std::string error = errorFor([](Connection& connection) {
        while (
            connection.write("HTTP/1.1 103 Early Hints\r\nX-Hint: " + std::string(1000, 'x') + "\r\n\r\n")) {
        }
    });
    EXPECT_TRUE(contains(error, "longer than allowed")) << error;
}

TEST(CurlHttpClientHostile, AnAnswerThatIsCutOffIsAnError) {
    EXPECT_NE(errorFor([](Connection&) {}), "");
    EXPECT_NE(errorFor([](Connection& connection) { connection.write("HTTP/1.1 200 OK\r\nContent-Le"); }),
              "");
    EXPECT_NE(errorFor([](Connection& connection) {
                  connection.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
              }),
              "");
    EXPECT_NE(errorFor([](Connection& connection) {
                  connection.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhal");
              }),
              "");
}

TEST(CurlHttpClientHostile, WhatIsNoHttpIsAnError) {
    for (const char* answer : {"SSH-2.0-server\r\n", "\r\n\r\n\r\n", "HTTP/9.9 200 OK\r\n\r\n",
                               "HTTP/1.1 abc\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nbody"}) {
        const std::string error = errorFor([&](Connection& connection) { connection.write(answer); });
        EXPECT_NE(error, "") << answer;
    }
}

TEST(CurlHttpClientHostile, NobodyListeningIsAnErrorThatNamesTheAddress) {
    int port = 0;
    {
        const RawServer gone([](Connection&) {});
        port = gone.port();
    }
    CurlHttpClient client;
    const std::string url = "https://127.0.0.1:" + std::to_string(port) + "/v1/session";
    const std::string error = errorOf(sendAndWait(client, requestTo(url + "?key=secret")));
    EXPECT_TRUE(error.starts_with("GET " + url + ": ")) << error;
    EXPECT_FALSE(contains(error, "secret")) << error;
}

TEST(CurlHttpClientHostile, CancellingClosesTheConnection) {
    std::promise<void> arrived;
    std::promise<bool> closed;
    RawServer server([&](Connection& connection) {
        connection.readRequest();
        arrived.set_value();
        closed.set_value(connection.waitForClose());
    });
    CurlHttpClient client;
    auto token = client.send(requestTo(server.origin()), [](const HttpResult&) { ADD_FAILURE(); });
    arrived.get_future().wait();
    token.cancel();
    auto result = closed.get_future();
    ASSERT_EQ(result.wait_for(seconds(10)), std::future_status::ready);
    EXPECT_TRUE(result.get());
}

TEST(CurlHttpClientHostile, ACompletionMayDropTheClient) {
    RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 204 No Content\r\n\r\n");
    });
    auto client = std::make_unique<CurlHttpClient>();
    std::promise<void> sent;
    std::promise<void> dropped;
    const auto token = client->send(requestTo(server.origin()), [&](const HttpResult&) {
        sent.get_future().wait();
        client.reset();
        dropped.set_value();
    });
    sent.set_value();
    ASSERT_EQ(dropped.get_future().wait_for(seconds(10)), std::future_status::ready);
}

TEST(CurlHttpClientHostile, WhatACompletionThrowsIsReported) {
    RawServer server([](Connection& connection) {
        connection.readRequest();
        connection.write("HTTP/1.1 204 No Content\r\n\r\n");
    });
    std::promise<std::string> reported;
    CurlHttpClient client(
        {.allowInsecureHttp = false, .extraCaFile = {}, .onEscapedError = [&](std::string_view text) {
             reported.set_value(std::string(text));
         }});
    const auto token =
        client.send(requestTo(server.origin()), [](const HttpResult&) { throw std::runtime_error("oops"); });
    EXPECT_EQ(reported.get_future().get(), "an HTTP completion threw: oops");
    EXPECT_TRUE(sendAndWait(client, requestTo(server.origin()))) << "the client goes on";
}

}  // namespace mireth::platform
