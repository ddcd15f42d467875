// What the server bears with from its clients: the length of a head, slowness, many connections.
#include <gtest/gtest.h>

#include <chrono>
#include <list>
#include <thread>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::RawConnection;
using test::RunningReceiver;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* config = "/app-insights/v1/b1/p1/sessionReplayConfig";

TEST(HttpBounds, AnOversizedHeadIsRefused) {
    RunningReceiver receiver;
    const int port = receiver.port();
    EXPECT_EQ(test::request(port, "GET", config, "", "X-A: " + std::string(3000, 'a') + "\r\n").status, 200);
    EXPECT_EQ(test::request(port, "GET", config, "", "X-A: " + std::string(5000, 'a') + "\r\n").status, 431);
    std::string many;
    for (int i = 0; i < 2000; ++i) {
        many += "X-" + std::to_string(i) + ": a\r\n";
    }
    EXPECT_EQ(test::request(port, "GET", config, "", many).status, 431);
    // One that never ends.
    const RawConnection endless(port);
    for (int i = 0; i < 100 && endless.send("X: " + std::string(2000, 'a') + "\r\n"); ++i) {
    }
    const auto response = endless.receive();
    EXPECT_TRUE(response.status == 431 || response.status == 0);
}

TEST(HttpBounds, ASilentClientIsCutOff) {
    RunningReceiver receiver(R"({"default":{},"limits":{"idleSeconds":1}})");
    const auto began = Clock::now();
    const RawConnection silent(receiver.port());
    EXPECT_EQ(silent.receive().status, 0);
    EXPECT_GE(Clock::now() - began, 900ms);
    EXPECT_LT(Clock::now() - began, 5s);
}

TEST(HttpBounds, AHeadThatDripsIsCutOff) {
    RunningReceiver receiver(R"({"default":{},"limits":{"headSeconds":1}})");
    const RawConnection slow(receiver.port());
    const auto began = Clock::now();
    slow.send("GET / HTTP/1.1\r\n");
    while (slow.send("X") && Clock::now() - began < 10s) {
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_LT(Clock::now() - began, 5s);
}

TEST(HttpBounds, ABodyThatDripsIsCutOff) {
    RunningReceiver receiver(R"({"default":{},"limits":{"requestSeconds":1}})");
    const RawConnection slow(receiver.port());
    const auto began = Clock::now();
    slow.send("POST /mobile-sr-ingestion/v1/sessions/create HTTP/1.1\r\nContent-Length: 10000\r\n\r\n");
    while (slow.send("X") && Clock::now() - began < 20s) {
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_LT(Clock::now() - began, 8s);
}

// The word to go on is no answer yet, after which bytes would give more time.
TEST(HttpBounds, ABodyThatWasToldToGoOnHasNoMoreTime) {
    RunningReceiver receiver(R"({"default":{},"limits":{"requestSeconds":1}})");
    const RawConnection slow(receiver.port());
    const auto began = Clock::now();
    slow.send(
        "PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nExpect: 100-continue\r\n"
        "Content-Length: 16000000\r\n\r\n");
    const std::string piece(32768, 'X');
    while (slow.send(piece) && Clock::now() - began < 20s) {
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_LT(Clock::now() - began, 8s);
}

TEST(HttpBounds, SlowClientsDoNotHinderTheOthers) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connections":64}})");
    std::list<RawConnection> slow;
    for (int i = 0; i < 50; ++i) {
        slow.emplace_back(receiver.port())
            .send("PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\n");
    }
    const auto id = receiver.createSession();
    const auto began = Clock::now();
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(receiver.put(test::chunkUpload(id, i)).body, R"({"status":"SUCCESS"})");
    }
    EXPECT_LT(Clock::now() - began, 5s);
    slow.clear();
}

TEST(HttpBounds, SlowClientsAreShedForThoseThatWaitAndOnlyForThose) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connections":3}})");
    std::list<RawConnection> slow;
    for (int i = 0; i < 3; ++i) {
        slow.emplace_back(receiver.port()).send("GET / HTTP/1.1\r\n");
    }
    // Alone they are left alone.
    std::this_thread::sleep_for(2500ms);
    const auto began = Clock::now();
    EXPECT_EQ(receiver.get(config).status, 200);
    EXPECT_LT(Clock::now() - began, 2s);
    int left = 0;
    for (const auto& connection : slow) {
        connection.send("Host: localhost\r\n\r\n");
        left += connection.receive().status == 200 ? 1 : 0;
    }
    EXPECT_EQ(left, 2);
    EXPECT_NE(receiver.get("/metrics").body.find("connections_dropped_total 1\n"), std::string::npos);
}

TEST(HttpBounds, ConnectionsPastTheLimitAreTurnedAway) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connections":2}})");
    // Two are served, two wait.
    std::list<RawConnection> taken;
    for (int i = 0; i < 4; ++i) {
        taken.emplace_back(receiver.port());
    }
    const RawConnection surplus(receiver.port());
    const auto response = surplus.receive();
    EXPECT_EQ(response.status, 503);
    EXPECT_NE(response.header("x-request-id"), "");
    // Nobody else has lost anything by it.
    for (const auto& connection : taken) {
        connection.send("GET " + std::string(config) + " HTTP/1.1\r\n\r\n");
    }
    for (const auto& connection : taken) {
        EXPECT_EQ(connection.receive().status, 200);
    }
}

TEST(HttpBounds, ARefusalWaitsForNoBody) {
    // Longer than a connection of the test's waits.
    RunningReceiver receiver(R"({"default":{},"limits":{"idleSeconds":600,"requestSeconds":600}})",
                             std::nullopt, {.uploadToken = "upload-token-0123456789"});
    for (const std::string framing : {"Content-Length: 100000", "Transfer-Encoding: chunked"}) {
        const RawConnection stranger(receiver.port());
        stranger.send("PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\n" + framing +
                      "\r\n\r\n");
        EXPECT_EQ(stranger.receive().status, 403) << framing;
    }
}

TEST(HttpBounds, OneAddressHasItsShareOfTheConnections) {
    RunningReceiver receiver(R"({"default":{},"limits":{"connectionsPerAddress":2}})");
    std::list<RawConnection> taken;
    taken.emplace_back(receiver.port());
    taken.emplace_back(receiver.port());
    EXPECT_EQ(RawConnection(receiver.port()).receive().status, 503);
    taken.pop_back();
    // The server sees it a moment later.
    int status = 503;
    for (int i = 0; i < 2000 && status != 200; ++i) {
        status = receiver.get(config).status;
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(status, 200);
}

}  // namespace
}  // namespace mireth::receiver
