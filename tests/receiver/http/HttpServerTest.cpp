// The server's own behaviour: identifiers on responses, its threads, stopping.
#include "http/HttpServer.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <thread>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::RawConnection;
using test::RunningReceiver;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* config = "/app-insights/v1/b1/p1/sessionReplayConfig";

bool isUuid(const std::string& text) {
    return std::regex_match(text, std::regex("[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}"));
}

TEST(HttpServer, EchoesAPlainTransactionId) {
    RunningReceiver receiver;
    for (const std::string id : {"6F9619FF-8B86-D011-B42D-00C04FC964FF", "a", "A_b.c-1"}) {
        const auto response =
            test::request(receiver.port(), "GET", config, "", "X-Transaction-Id: " + id + "\r\n");
        EXPECT_EQ(response.header("x-transaction-id"), id);
        EXPECT_TRUE(isUuid(response.header("x-request-id")));
    }
}

TEST(HttpServer, MakesATransactionIdWhenTheRequestHasNoPlainOne) {
    RunningReceiver receiver;
    EXPECT_TRUE(isUuid(receiver.get(config).header("x-transaction-id")));
    for (const std::string& id :
         {std::string("a b"), std::string("<b>"), std::string(129, 'a'), std::string()}) {
        const auto response =
            test::request(receiver.port(), "GET", config, "", "x-transaction-id: " + id + "\r\n");
        EXPECT_TRUE(isUuid(response.header("x-transaction-id"))) << id;
    }
}

TEST(HttpServer, EveryResponseCarriesBothIdentifiers) {
    RunningReceiver receiver(R"({"default":{},"limits":{"requestBytes":10}})");
    const int port = receiver.port();
    const std::string record = "/mobile-sr-ingestion/v1/sessions/record-playback";
    std::vector<test::RawResponse> responses{receiver.get(config),
                                             receiver.get("/nothing"),
                                             receiver.get("/mobile-sr-ingestion/v1/sessions/create"),
                                             receiver.post("/mobile-sr-ingestion/v1/sessions/create", "x"),
                                             test::request(port, "PUT", record, std::string(20, 'x')),
                                             receiver.get("/" + std::string(3000, 'a'))};
    const RawConnection garbage(port);
    garbage.send("garbage\r\n\r\n");
    responses.push_back(garbage.receive());
    const std::vector<int> statuses{200, 404, 405, 400, 413, 431, 400};
    for (std::size_t i = 0; i < responses.size(); ++i) {
        EXPECT_EQ(responses[i].status, statuses[i]) << i;
        EXPECT_TRUE(isUuid(responses[i].header("x-transaction-id"))) << i;
        EXPECT_TRUE(isUuid(responses[i].header("x-request-id"))) << i;
        EXPECT_EQ(responses[i].header("content-type"), "application/json") << i;
        EXPECT_FALSE(responses[i].body.empty()) << i;
    }
}

TEST(HttpServer, TwoRequestsHaveDifferentRequestIds) {
    RunningReceiver receiver;
    EXPECT_NE(receiver.get(config).header("x-request-id"), receiver.get(config).header("x-request-id"));
}

TEST(HttpServer, CompressesQuicklyOrNotAtAll) {
    RunningReceiver receiver;
    const auto encoding = [&](const std::string& accepted) {
        return test::request(receiver.port(), "GET", config, "", "Accept-Encoding: " + accepted + "\r\n")
            .header("content-encoding");
    };
    EXPECT_EQ(encoding("gzip, deflate, br, zstd"), "gzip");
    EXPECT_EQ(encoding("br"), "");
}

TEST(HttpServer, AThreadIsUsedAgain) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connections":1}})");
    int served = 0;
    for (int i = 0; i < 200 && served < 20; ++i) {
        served += receiver.get(config).status == 200 ? 1 : 0;
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(served, 20);
}

TEST(HttpServer, StoppingFinishesWhatIsInFlight) {
    RunningReceiver receiver;
    const auto id = receiver.createSession();
    const auto upload = test::chunkUpload(id, 0);
    const auto body = upload.body();
    const RawConnection connection(receiver.port());
    connection.send("PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nContent-Length: " +
                    std::to_string(body.size()) + "\r\nContent-Type: " + upload.contentType() + "\r\n\r\n" +
                    body.substr(0, 100));
    std::this_thread::sleep_for(100ms);
    std::thread stopping([&] { receiver.server().stop(); });
    std::this_thread::sleep_for(200ms);
    connection.send(body.substr(100));
    EXPECT_EQ(connection.receive().body, R"({"status":"SUCCESS"})");
    stopping.join();
    EXPECT_EQ(receiver.contents(id).chunks.size(), 1U);
    EXPECT_THROW(RawConnection{receiver.port()}, std::runtime_error);
}

TEST(HttpServer, AnOccupiedPortIsNamed) {
    RunningReceiver receiver;
    class Nobody final : public RequestHandler {
        std::unique_ptr<Exchange> begin(const RequestHead&) override { return nullptr; }
        void headTooLong() override {}
        void turnedAway() override {}
        void slowClientShed() override {}
    } nobody;
    const Limits limits;
    const auto second =
        HttpServer::start({.host = "127.0.0.1", .port = receiver.port(), .tls = {}}, limits, nobody, {});
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error(), "cannot listen on 127.0.0.1 port " + std::to_string(receiver.port()) +
                                  ": Address already in use");
}

TEST(HttpServer, ACompressedBodyIsCappedByWhatItUnfoldsTo) {
    RunningReceiver receiver;
    // An empty gzip member is enough to see that the coding is understood and the body then judged as any
    // other.
    const std::string empty(
        "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\x03\x00\x00\x00\x00\x00\x00\x00\x00\x00", 20);
    EXPECT_EQ(
        receiver.post("/mobile-sr-ingestion/v1/sessions/create", empty, "Content-Encoding: gzip\r\n").status,
        400);
}

}  // namespace
}  // namespace mireth::receiver
