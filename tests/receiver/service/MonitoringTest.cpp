// What the operator's monitoring reads: /healthz and /metrics.
#include <gtest/gtest.h>

#include "service/MeasuredExchange.hpp"
#include "service/Metrics.hpp"
#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using std::chrono::milliseconds;

bool holds(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\nmireth_receiver_" + line + "\n") != std::string::npos;
}

TEST(Health, IsWellWhileTheStoreAnswers) {
    RunningReceiver receiver;
    const auto response = receiver.get("/healthz");
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, R"({"status":"ok"})");
    EXPECT_EQ(response.header("cache-control"), "no-store");
}

TEST(Health, IsIllWhenTheStoreCannotBeRead) {
    RunningReceiver receiver;
    const Database other(receiver.data() + "/receiver.db", Database::Mode::write);
    other.execute("ALTER TABLE session RENAME TO elsewhere");
    EXPECT_EQ(receiver.get("/healthz").status, 503);
    const auto reports = receiver.takeReports();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_NE(reports[0].find("no such table: session"), std::string::npos);
    other.execute("ALTER TABLE elsewhere RENAME TO session");
    EXPECT_EQ(receiver.get("/healthz").status, 200);
}

TEST(MetricsEndpoint, CountsRequestsBytesChunksAndWhatIsKept) {
    RunningReceiver receiver(R"({"default":{"uploadRate":{"perSecond":0,"burst":3}}})");
    const auto id = receiver.createSession();
    const auto upload = chunkUpload(id, 0);
    receiver.put(upload);
    receiver.put(upload);
    receiver.put(chunkUpload(id, 1, "no video"));
    receiver.put(chunkUpload(id, 2));
    receiver.get("/nothing");
    const auto response = receiver.get("/metrics");
    EXPECT_EQ(response.header("content-type"), "text/plain; version=0.0.4");
    const auto& text = response.body;
    for (const std::string line :
         {R"(requests_total{endpoint="create",status="200"} 1)",
          R"(requests_total{endpoint="record",status="200"} 3)",
          R"(requests_total{endpoint="record",status="400"} 1)",
          R"(requests_total{endpoint="other",status="404"} 1)", R"(chunks_total{outcome="kept"} 1)",
          R"(chunks_total{outcome="repeated"} 1)", R"(chunks_total{outcome="malformed"} 1)",
          R"(chunks_total{outcome="throttled"} 1)", R"(request_seconds_count{endpoint="record"} 4)",
          R"(request_seconds_bucket{endpoint="record",le="+Inf"} 4)"}) {
        EXPECT_TRUE(holds(text, line)) << line << '\n' << text;
    }
    EXPECT_TRUE(holds(text, "throttled_total 1"));
    EXPECT_TRUE(holds(text, "errors_total 0"));
    EXPECT_TRUE(holds(text, "sessions 1"));
    EXPECT_TRUE(holds(text, "chunks 1"));
    EXPECT_TRUE(holds(text, "video_bytes " + std::to_string(mp4().size())));
    EXPECT_FALSE(holds(text, "received_bytes_total 0"));
    EXPECT_FALSE(holds(text, "disk_free_bytes 0"));
}

class Failing final : public Exchange {
  public:
    std::uint64_t bodyLimit() const override { return 10; }
    void accept(std::string_view) override { throw std::bad_alloc(); }
    Answer finish() override { throw std::runtime_error("no"); }
    Answer refuse(int) override { throw 1; }
};

TEST(Measured, WhatThrowsCountsAsAnErrorOfTheReceivers) {
    Metrics metrics;
    const MeasuredExchange::Now now = [] { return std::chrono::steady_clock::time_point{}; };
    const auto made = [&] { return MeasuredExchange(std::make_unique<Failing>(), "record", metrics, now); };
    EXPECT_THROW(made().accept("bytes"), std::bad_alloc);
    EXPECT_THROW(made().finish(), std::runtime_error);
    EXPECT_THROW(made().refuse(400), int);
    const auto text = metrics.text({});
    EXPECT_TRUE(holds(text, R"(requests_total{endpoint="record",status="500"} 3)")) << text;
    EXPECT_TRUE(holds(text, "errors_total 3"));
    EXPECT_TRUE(holds(text, "received_bytes_total 5"));
}

TEST(MetricsEndpoint, CountsHeadsThatAreTooLong) {
    RunningReceiver receiver;
    EXPECT_EQ(receiver.get("/" + std::string(3000, 'a')).status, 431);
    EXPECT_TRUE(holds(receiver.get("/metrics").body, R"(requests_total{endpoint="other",status="431"} 1)"));
}

TEST(MetricsText, LatenciesAreCumulativeAndEveryNameIsDescribedOnce) {
    Metrics metrics;
    for (const int millis : {0, 1, 2, 40, 9000}) {
        metrics.count({.endpoint = "list", .status = 200, .took = milliseconds(millis)});
    }
    metrics.count({.endpoint = "list", .status = 503, .received = 7, .sent = 9});
    metrics.countTurnedAway();
    metrics.countExpired(3);
    const auto text = metrics.text({});
    for (const std::string line : {R"(request_seconds_bucket{endpoint="list",le="0.001"} 3)",
                                   R"(request_seconds_bucket{endpoint="list",le="0.0025"} 4)",
                                   R"(request_seconds_bucket{endpoint="list",le="0.025"} 4)",
                                   R"(request_seconds_bucket{endpoint="list",le="0.05"} 5)",
                                   R"(request_seconds_bucket{endpoint="list",le="5"} 5)",
                                   R"(request_seconds_bucket{endpoint="list",le="+Inf"} 6)",
                                   R"(request_seconds_sum{endpoint="list"} 9.043)"}) {
        EXPECT_TRUE(holds(text, line)) << line << '\n' << text;
    }
    EXPECT_TRUE(holds(text, "errors_total 1"));
    EXPECT_TRUE(holds(text, "received_bytes_total 7"));
    EXPECT_TRUE(holds(text, "sent_bytes_total 9"));
    EXPECT_TRUE(holds(text, "connections_refused_total 1"));
    EXPECT_TRUE(holds(text, "sessions_expired_total 3"));
    std::size_t described = 0;
    for (std::size_t at = 0;
         (at = text.find("# TYPE mireth_receiver_request_seconds ", at)) != std::string::npos; ++at) {
        ++described;
    }
    EXPECT_EQ(described, 1U);
}

}  // namespace
}  // namespace mireth::receiver
