// The receiver as docs/operating.md has it run for strangers: behind nginx, with both tokens.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/ProxiedReceiver.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using httplib::Headers;
using nlohmann::json;

constexpr const char* record = "/mobile-sr-ingestion/v1/sessions/record-playback";
constexpr const char* log = "/WRTarrowEngine/Ajax.php?action=ClientLog&M_BID=my-brand&M_ZoneID=my-project";
constexpr const char* success = R"({"status":"SUCCESS"})";

class Proxy : public testing::Test {
  protected:
    void SetUp() override {
        if (!ProxiedReceiver::hasNginx()) {
            GTEST_SKIP() << "NOT TESTED: there is no nginx on this system";
        }
        receiver_ = std::make_unique<ProxiedReceiver>();
        uploads_ = receiver_->client("sr.example.org");
        page_ = receiver_->client("replay.example.org");
    }

    std::string underToken(const std::string& path) const { return "/t/" + receiver_->uploadToken + path; }
    std::string createSession() const {
        const auto response = uploads_->Post(
            underToken("/mobile-sr-ingestion/v1/sessions/create"),
            R"({"brandId":"my-brand","brandDc":"d","projectId":"my-project","isTestSession":false})",
            "application/json");
        EXPECT_EQ(response->status, 200) << response->body;
        return json::parse(response->body).at("sessionInfo").at("sessionId");
    }
    static Upload chunk(const std::string& session, const std::string& video) {
        auto upload = chunkUpload(session, 0, video);
        upload.parts[1] = jsonPart("info", infoJson(session, 0, "my-brand", "my-project"));
        return upload;
    }
    httplib::Result put(const Upload& upload) const {
        return uploads_->Put(underToken(record), upload.body(), upload.contentType());
    }
    /// The cookie of somebody who typed the viewing token into the page.
    std::string logIn() const {
        const auto response =
            page_->Post("/login",
                        {{"X-Mireth-Request", "1"},
                         {"Origin", receiver_->origin("replay.example.org")},
                         {"Sec-Fetch-Site", "same-origin"}},
                        R"({"token":")" + receiver_->viewingToken + R"("})", "application/json");
        EXPECT_EQ(response->status, 204) << response->body;
        const auto cookie = response->get_header_value("Set-Cookie");
        for (const auto* const attribute : {"; Secure", "; HttpOnly", "; SameSite=Strict"}) {
            EXPECT_NE(cookie.find(attribute), std::string::npos) << cookie;
        }
        return cookie.substr(0, cookie.find(';'));
    }

    std::unique_ptr<ProxiedReceiver> receiver_;
    std::unique_ptr<httplib::SSLClient> uploads_;
    std::unique_ptr<httplib::SSLClient> page_;
};

TEST_F(Proxy, TellsWhoeverAsksThatTheReceiverIsWell) {
    const auto response = page_->Get("/healthz");
    EXPECT_EQ(response->status, 200);
    EXPECT_EQ(response->body, R"({"status":"ok"})");
    receiver_->killReceiver();
    EXPECT_EQ(page_->Get("/healthz")->status, 502);
}

TEST_F(Proxy, UploadsPassUnderTheirTokenOnly) {
    const auto id = createSession();
    // Far beyond what nginx takes unless it is told otherwise.
    const auto upload = chunk(id, mp4({.bytesPerFrame = 500'000}));
    EXPECT_EQ(uploads_->Put(record, upload.body(), upload.contentType())->status, 403);
    EXPECT_EQ(put(upload)->body, success);
    const auto line = "Message=%7B%22sessionId%22:%22" + id + "%22%7D&LevelName=error";
    const auto posted =
        receiver_->client("us-west.sr.example.org")->Post(log, line, "application/x-www-form-urlencoded");
    EXPECT_EQ(posted->status, 200);
    EXPECT_EQ(posted->body, R"({"status":"Success"})");
}

TEST_F(Proxy, ViewersLogInAndWatch) {
    const auto id = createSession();
    const auto video = mp4({.bytesPerFrame = 5000});
    EXPECT_EQ(put(chunk(id, video))->body, success);
    const auto page = page_->Get("/");
    EXPECT_EQ(page->status, 200);
    EXPECT_NE(page->body.find("<!doctype html>"), std::string::npos);
    EXPECT_TRUE(page->get_header_value("Content-Security-Policy").starts_with("default-src 'none'"));
    EXPECT_EQ(page_->Get("/api/sessions")->status, 401);

    const Headers viewer{{"Cookie", logIn()}};
    const auto list = json::parse(page_->Get("/api/sessions", viewer)->body);
    EXPECT_EQ(list.at("sessions").at(0).at("id"), id);
    const auto address = "/api/sessions/" + id + "/chunks/0.mp4";
    const auto whole = page_->Get(address, viewer);
    EXPECT_EQ(whole->status, 200);
    EXPECT_TRUE(whole->body == video);
    auto withRange = viewer;
    withRange.emplace("Range", "bytes=1000-60999");
    const auto piece = page_->Get(address, withRange);
    EXPECT_EQ(piece->status, 206);
    EXPECT_EQ(piece->get_header_value("Content-Range"), "bytes 1000-60999/" + std::to_string(video.size()));
    EXPECT_TRUE(piece->body == video.substr(1000, 60'000));
    auto known = viewer;
    known.emplace("If-None-Match", whole->get_header_value("ETag"));
    EXPECT_EQ(page_->Get(address, known)->status, 304);

    auto change = viewer;
    change.emplace("X-Mireth-Request", "1");
    change.emplace("Origin", "https://elsewhere.example.org");
    EXPECT_EQ(page_->Delete("/api/sessions/" + id, change)->status, 403);
    change.erase("Origin");
    EXPECT_EQ(page_->Delete("/api/sessions/" + id, change)->status, 204);
}

TEST_F(Proxy, ThePageAnswersToItsOwnNameOnly) {
    EXPECT_EQ(uploads_->Get("/")->status, 421);
    EXPECT_EQ(uploads_->Get("/api/sessions")->status, 421);
}

TEST_F(Proxy, MonitoringComesWithTheViewersToken) {
    EXPECT_EQ(page_->Get("/metrics")->status, 401);
    const auto metrics =
        page_->Get("/metrics", Headers{{"Authorization", "Bearer " + receiver_->viewingToken}});
    EXPECT_EQ(metrics->status, 200);
    EXPECT_NE(metrics->body.find("mireth_receiver_disk_free_bytes"), std::string::npos);
}

TEST_F(Proxy, WhatIsTooLongIsAnsweredSoByEither) {
    const auto line = uploads_->Post(log, "Message=" + std::string(200'000, 'a') + "&LevelName=info",
                                     "application/x-www-form-urlencoded");
    EXPECT_EQ(line->status, 413);
    EXPECT_EQ(line->body, R"({"status":"Failure"})");
    const std::string large(21U << 20U, 'x');
    EXPECT_EQ(uploads_->Put(underToken(record), large, "multipart/form-data; boundary=b")->status, 413);
}

TEST_F(Proxy, NoLogOfTheProxyHoldsAToken) {
    const auto id = createSession();
    EXPECT_EQ(put(chunk(id, mp4({.bytesPerFrame = 100'000})))->body, success);
    EXPECT_EQ(put(chunk("unknown", mp4()))->status, 200);
    EXPECT_EQ(uploads_->Get(underToken("/nothing"))->status, 404);
    EXPECT_EQ(uploads_->Put(underToken(record), std::string(21U << 20U, 'x'), "text/plain")->status, 413);
    // One that breaks off.
    EXPECT_FALSE(receiver_->client("sr.example.org")
                     ->Put(
                         underToken(record), 1'000'000,
                         [](std::size_t, std::size_t, httplib::DataSink& sink) {
                             sink.write("half", 4);
                             return false;
                         },
                         "text/plain"));
    logIn();
    receiver_->killReceiver();
    EXPECT_EQ(uploads_->Get(underToken("/nothing"))->status, 502);
    const auto logs = receiver_->logs();
    EXPECT_NE(logs.find("\"PUT\" 413"), std::string::npos) << logs;
    EXPECT_NE(logs.find("\"GET\" 502"), std::string::npos) << logs;
    EXPECT_EQ(logs.find(receiver_->uploadToken), std::string::npos) << logs;
    EXPECT_EQ(logs.find(receiver_->viewingToken), std::string::npos) << logs;
}

}  // namespace
}  // namespace mireth::receiver
