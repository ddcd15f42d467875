// One session over HTTP: its replay, its videos, its removal.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunningReceiver.hpp"
#include "support/StoredSession.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using nlohmann::json;

constexpr const char* log = "/WRTarrowEngine/Ajax.php?action=ClientLog&M_ZoneID=p1&M_BID=b1";

class ReplayApi : public testing::Test {
  protected:
    json replay() const { return receiver_.getJson("/api/sessions/" + id_); }
    std::string at(const std::string& rest) const { return "/api/sessions/" + id_ + rest; }

    RunningReceiver receiver_;
    const std::string id_ = receiver_.createSession();
};

TEST_F(ReplayApi, HoldsTheTimelineAsUploaded) {
    receiver_.put(chunkUpload(id_, 1));
    receiver_.put(chunkUpload(id_, 0));
    const auto answer = replay();
    auto expected = json::parse(timelineJson(0));
    for (const auto& event : json::parse(timelineJson(1))) {
        expected.push_back(event);
    }
    EXPECT_EQ(answer.at("timeline"), expected);
    EXPECT_EQ(answer.at("session").at("window"), json::parse(R"({"widthPx":1170,"heightPx":2532.5})"));
    EXPECT_EQ(answer.at("metadata"), json::parse(R"([{"id":"DeviceModel","value":"Phone"}])"));
    EXPECT_EQ(answer.at("session").at("counts").at("taps"), 2);
    const auto timeline = receiver_.get(at("/timeline.json"));
    EXPECT_EQ(json::parse(timeline.body), expected);
    EXPECT_EQ(timeline.header("content-disposition"), "attachment; filename=\"session-" + id_ + ".json\"");
}

TEST_F(ReplayApi, IsCompressedForWhoTakesThatAndHasALengthForOthers) {
    receiver_.put(chunkUpload(id_, 0));
    const auto plain = receiver_.get(at(""));
    EXPECT_EQ(plain.header("content-length"), std::to_string(plain.body.size()));
    const auto compressed = receiver_.get(at(""), "Accept-Encoding: gzip, br\r\n");
    EXPECT_EQ(compressed.status, 200);
    EXPECT_EQ(compressed.header("content-encoding"), "gzip");
    EXPECT_EQ(compressed.header("content-type"), "application/json");
    EXPECT_EQ(compressed.header("etag"), plain.header("etag"));
    EXPECT_LT(compressed.body.size(), plain.body.size());
    const RawConnection old(receiver_.port());
    old.send("GET " + at("") + " HTTP/1.0\r\nHost: localhost\r\nAccept-Encoding: gzip\r\n\r\n");
    EXPECT_EQ(old.receive().body, plain.body);
}

TEST_F(ReplayApi, OfASessionWithoutChunksIsComplete) {
    const auto answer = replay();
    EXPECT_EQ(answer.at("session").at("window"), nullptr);
    for (const auto* const key : {"metadata", "chunks", "timeline", "logs"}) {
        EXPECT_EQ(answer.at(key), json::array()) << key;
    }
    EXPECT_EQ(receiver_.get(at("/timeline.json")).body, "[]");
}

TEST_F(ReplayApi, EveryNumberTakesTenSecondsWhetherItsChunkIsThereOrShortOrLong) {
    receiver_.put(chunkUpload(id_, 0));
    receiver_.put(chunkUpload(id_, 1, mp4({.duration = 2400})));
    receiver_.put(chunkUpload(id_, 2, mp4({.duration = 8400})));
    receiver_.put(chunkUpload(id_, 4, mp4({.duration = 3000})));
    const auto answer = replay();
    const std::vector<std::int64_t> places{0, 10'000, 20'000, 40'000};
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(answer.at("chunks").at(i).at("atMillis"), places[i]) << i;
    }
    EXPECT_EQ(answer.at("chunks").at(2).at("durationMillis"), 14'000);
    EXPECT_EQ(answer.at("session").at("durationMillis"), 45'000);
    EXPECT_EQ(receiver_.getJson("/api/sessions").at("sessions").at(0).at("durationMillis"), 45'000);
}

TEST_F(ReplayApi, PlacesChunksBehindThoseThatAreMissing) {
    receiver_.put(chunkUpload(id_, 0, mp4({.duration = 3000})));
    receiver_.put(chunkUpload(id_, 3));
    const auto chunks = replay().at("chunks");
    ASSERT_EQ(chunks.size(), 2U);
    EXPECT_EQ(chunks[0].at("atMillis"), 0);
    EXPECT_EQ(chunks[0].at("durationMillis"), 5000);
    EXPECT_EQ(chunks[1], json::parse(R"({"number":3,"atMillis":30000,"durationMillis":10000,"frames":20,
        "bytes":)" + std::to_string(mp4().size()) +
                                     R"(,"endMillis":1700000010000,"receivedMillis":1700000000123,
        "url":")" + at("/chunks/3.mp4") +
                                     "\"}"));
}

TEST_F(ReplayApi, TakesLogLinesApart) {
    const auto post = [&](const std::string& line) {
        EXPECT_EQ(receiver_.post(log, "LevelName=error&Message=" + line).body, R"({"status":"Success"})");
    };
    post(R"({"logMessage":"a%20%3Cb%3E","sessionId":")" + id_ + R"(","logTag":"NETWORK","reason":{"x":1}})");
    post(R"({"sessionId":")" + id_ + R"(","logTag":7})");
    EXPECT_EQ(replay().at("logs"),
              json::parse(R"([{"atMillis":null,"receivedMillis":1700000000123,"level":"error","tag":"NETWORK",
        "message":"a <b>","fields":{"sessionId":")" +
                          id_ + R"(","reason":{"x":1}}},
        {"atMillis":null,"receivedMillis":1700000000123,"level":"error","tag":"","message":"",
        "fields":{"sessionId":")" +
                          id_ + R"(","logTag":7}}])"));
}

TEST_F(ReplayApi, IsNotSentAgainWhenTheSessionDidNotChange) {
    receiver_.put(chunkUpload(id_, 0));
    const auto tag = [&] { return receiver_.get(at("")).header("etag"); };
    const auto unchanged = [&](const std::string& etag) {
        return receiver_.get(at(""), "If-None-Match: " + etag + "\r\n").status == 304;
    };
    auto etag = tag();
    EXPECT_TRUE(unchanged(etag));
    receiver_.createSession();
    EXPECT_TRUE(unchanged(etag));
    receiver_.put(chunkUpload(id_, 1));
    EXPECT_FALSE(unchanged(etag));
    etag = tag();
    receiver_.post(log, "LevelName=info&Message=%7B%22sessionId%22:%22" + id_ + "%22%7D");
    EXPECT_FALSE(unchanged(etag));
    etag = tag();
    receiver_.closeSession(id_);
    EXPECT_FALSE(unchanged(etag));
}

TEST_F(ReplayApi, ServesAVideoWholeAndInRanges) {
    const auto bytes = mp4();
    receiver_.put(chunkUpload(id_, 0, bytes));
    const auto whole = receiver_.get(at("/chunks/0.mp4"));
    EXPECT_EQ(whole.status, 200);
    EXPECT_EQ(whole.body, bytes);
    EXPECT_EQ(whole.header("content-type"), "video/mp4");
    EXPECT_EQ(whole.header("accept-ranges"), "bytes");
    EXPECT_EQ(whole.header("cache-control"), "private, no-cache");
    const auto size = std::to_string(bytes.size());
    const auto range = [&](const std::string& value) {
        return receiver_.get(at("/chunks/0.mp4"), "Range: " + value + "\r\n");
    };
    const auto middle = range("bytes=10-19");
    EXPECT_EQ(middle.status, 206);
    EXPECT_EQ(middle.body, bytes.substr(10, 10));
    EXPECT_EQ(middle.header("content-range"), "bytes 10-19/" + size);
    EXPECT_EQ(range("bytes=-5").body, bytes.substr(bytes.size() - 5));
    EXPECT_EQ(range("bytes=5-").body, bytes.substr(5));
    const auto behind = range("bytes=" + size + "-");
    EXPECT_EQ(behind.status, 416);
    EXPECT_EQ(behind.header("content-range"), "bytes */" + size);
    EXPECT_EQ(range("bytes=0-1,5-6").status, 200);
    const auto again = receiver_.get(at("/chunks/0.mp4"), "If-None-Match: " + whole.header("etag") + "\r\n");
    EXPECT_EQ(again.status, 304);
    const auto head = request(receiver_.port(), "HEAD", at("/chunks/0.mp4"));
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.header("content-length"), size);
    EXPECT_EQ(head.body, "");
}

TEST_F(ReplayApi, ARangeOfAnotherStateOfTheFileIsAnsweredWithAllOfIt) {
    const auto bytes = mp4();
    receiver_.put(chunkUpload(id_, 0, bytes));
    const auto etag = receiver_.get(at("/chunks/0.mp4")).header("etag");
    const auto resumed = [&](const std::string& tag) {
        return receiver_.get(at("/chunks/0.mp4"), "Range: bytes=10-\r\nIf-Range: " + tag + "\r\n");
    };
    const auto same = resumed(etag);
    EXPECT_EQ(same.status, 206);
    EXPECT_EQ(same.body, bytes.substr(10));
    for (const auto* const other : {"\"1-other\"", "Tue, 14 Nov 2023 22:13:20 GMT"}) {
        const auto whole = resumed(other);
        EXPECT_EQ(whole.status, 200) << other;
        EXPECT_EQ(whole.body, bytes) << other;
    }
}

TEST_F(ReplayApi, WhatIsUnknownIsNotFound) {
    receiver_.put(chunkUpload(id_, 0));
    for (const auto& target :
         {std::string("/api"), std::string("/api/"), std::string("/api/sessions/"),
          std::string("/api/sessions/unknown"), std::string("/api/sessions/unknown/timeline.json"),
          std::string("/api/sessions/unknown/chunks/0.mp4"), at("/chunks/1.mp4"), at("/chunks/-1.mp4"),
          at("/chunks/0"), at("/chunks/0.mp4x"), at("/chunks/%2e%2e%2f0.mp4"), at("/chunks"), at("/other"),
          std::string("/api/sessions/..%2f..%2fetc")}) {
        const auto response = receiver_.get(target);
        EXPECT_EQ(response.status, 404) << target;
        EXPECT_TRUE(json::parse(response.body).contains("error")) << target;
    }
    EXPECT_EQ(receiver_.remove("/api/sessions/unknown").status, 404);
    const auto wrong = receiver_.remove("/api/sessions");
    EXPECT_EQ(wrong.status, 405);
    EXPECT_EQ(wrong.header("allow"), "GET");
}

TEST_F(ReplayApi, RemovalLeavesNothing) {
    const auto other = receiver_.createSession();
    for (const auto& id : {id_, other}) {
        receiver_.put(chunkUpload(id, 0));
        receiver_.post(log, "LevelName=info&Message=%7B%22sessionId%22:%22" + id + "%22%7D");
    }
    keepChunk(receiver_.store(), id_, 1, {screenEvent("Only here"), signalEvent("ErrorTap", "Secret words")},
              5);
    EXPECT_EQ(receiver_.videoFiles(), 3U);
    EXPECT_EQ(receiver_.remove(at("")).status, 204);
    EXPECT_EQ(receiver_.videoFiles(), 1U);
    EXPECT_EQ(receiver_.get(at("")).status, 404);
    EXPECT_EQ(receiver_.getJson("/api/sessions").at("total"), 1);
    EXPECT_EQ(receiver_.getJson("/api/facets").at("screens"), json::array({"Cart"}));
    EXPECT_EQ(receiver_.getJson("/api/sessions?text=secret").at("sessions"), json::array());
    EXPECT_EQ(receiver_.getJson("/api/sessions/" + other).at("logs").size(), 1U);
    // An upload that comes too late is refused and leaves nothing either.
    EXPECT_EQ(receiver_.put(chunkUpload(id_, 2)).body, R"({"status":"ERROR"})");
    EXPECT_EQ(receiver_.videoFiles(), 1U);
    // Not even in the free pages of the database or its log.
    for (const auto* const name : {"/receiver.db", "/receiver.db-wal"}) {
        const auto text = fileText(receiver_.data() + name);
        EXPECT_EQ(text.find("Secret words"), std::string::npos) << name;
        EXPECT_EQ(text.find("secret words"), std::string::npos) << name;
        EXPECT_EQ(text.find(id_), std::string::npos) << name;
    }
}

}  // namespace
}  // namespace mireth::receiver
