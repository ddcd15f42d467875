// Who may do what: upload tokens, viewers, host names, and other sites' pages. Over real sockets.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using Reports = std::vector<std::string>;

constexpr const char* uploadToken = "upload-token-0123456789";
constexpr const char* viewingToken = "viewing-token-0123456789";
constexpr const char* ours = "X-Mireth-Request: 1\r\n";
constexpr const char* create = "/mobile-sr-ingestion/v1/sessions/create";
constexpr const char* createBody =
    R"({"brandId":"b1","brandDc":"US_WEST","projectId":"p1","isTestSession":false})";

class Guarded : public testing::Test {
  protected:
    RawResponse logIn(const std::string& token, const std::string& headers = ours) const {
        return receiver_.post("/login", R"({"token":")" + token + R"("})", headers);
    }
    // The Cookie header of one who has logged in.
    std::string cookie() const {
        const auto set = logIn(viewingToken).header("set-cookie");
        return "Cookie: other=1; " + set.substr(0, set.find(';')) + "\r\n";
    }

    RunningReceiver receiver_{
        R"({"default":{}})", std::nullopt, {.uploadToken = uploadToken, .viewingToken = viewingToken}};
};

TEST_F(Guarded, UploadsComeUnderTheToken) {
    const std::string prefix = std::string("/t/") + uploadToken;
    const auto created = receiver_.post(prefix + create, createBody);
    EXPECT_EQ(created.status, 200);
    const std::string id = nlohmann::json::parse(created.body).at("sessionInfo").at("sessionId");
    const auto upload = chunkUpload(id, 0);
    const auto put = [&](const std::string& before) {
        return request(receiver_.port(), "PUT", before + "/mobile-sr-ingestion/v1/sessions/record-playback",
                       upload.body(), "Content-Type: " + upload.contentType() + "\r\n");
    };
    EXPECT_EQ(put(prefix).body, R"({"status":"SUCCESS"})");
    EXPECT_EQ(receiver_.get(prefix + "/app-insights/v1/b1/p1/sessionReplayConfig").status, 200);
    EXPECT_EQ(receiver_
                  .post(prefix + "/mobile-sr-ingestion/v1/sessions/" + id + "/close-session",
                        R"({"brandId":"b1","projectId":"p1"})")
                  .status,
              200);
    for (const std::string before :
         {"", "/t", "/t/", "/t/wrong-token-0123456789", "/t/upload-token-012345678",
          "/t/upload-token-0123456789x", "/t/viewing-token-0123456789"}) {
        const auto refused = put(before);
        EXPECT_TRUE(refused.status == 403 || refused.status == 404) << before;
        EXPECT_EQ(receiver_.post(before + create, createBody).status, refused.status) << before;
    }
    EXPECT_EQ(receiver_.contents(id).chunks.size(), 1U);
    EXPECT_EQ(receiver_.store().stats()->sessions, 1);
}

TEST_F(Guarded, AnUploadOfAnySizeWithoutTheTokenIsToldSo) {
    receiver_.takeReports();
    EXPECT_EQ(receiver_.post(create, std::string(1'000'000, 'x')).status, 403);
    EXPECT_EQ(receiver_.takeReports(),
              Reports{"an upload was refused: its address lacks /t/ and the upload token"});
}

TEST_F(Guarded, LogPostsNeedNoToken) {
    EXPECT_EQ(
        receiver_
            .post("/WRTarrowEngine/Ajax.php?action=ClientLog&M_ZoneID=p&M_BID=b", "Message=m&LevelName=info")
            .body,
        R"({"status":"Success"})");
}

TEST_F(Guarded, NothingIsShownToStrangers) {
    for (const auto* const target : {"/api/sessions", "/api/facets", "/api/sessions/x",
                                     "/api/sessions/x/chunks/0.mp4", "/api/nothing", "/metrics"}) {
        const auto response = receiver_.get(target);
        EXPECT_EQ(response.status, 401) << target;
        EXPECT_EQ(response.header("www-authenticate"), "Bearer") << target;
        EXPECT_TRUE(nlohmann::json::parse(response.body).contains("error")) << target;
    }
    EXPECT_EQ(receiver_.remove("/api/sessions/x").status, 401);
    // The page itself and a sign of life tell nothing.
    for (const auto* const target : {"/", "/healthz", "/api/viewer"}) {
        EXPECT_EQ(receiver_.get(target).status, 200) << target;
    }
}

TEST_F(Guarded, ViewersLogInAndOut) {
    EXPECT_EQ(receiver_.get("/api/viewer").body, R"({"login":"needed"})");
    const auto login = logIn(viewingToken);
    EXPECT_EQ(login.status, 204);
    EXPECT_TRUE(login.header("set-cookie").starts_with("mireth="));
    EXPECT_TRUE(login.header("set-cookie").ends_with("; Path=/; Max-Age=43200; HttpOnly; SameSite=Strict"));
    const auto mine = cookie();
    EXPECT_EQ(receiver_.get("/api/viewer", mine).body, R"({"login":"done"})");
    EXPECT_EQ(receiver_.get("/api/sessions", mine).status, 200);
    EXPECT_EQ(receiver_.get("/metrics", mine).status, 200);
    EXPECT_EQ(receiver_.get("/api/sessions", "Cookie: mireth=\r\n").status, 401);
    EXPECT_EQ(
        receiver_.get("/api/sessions", "Cookie: mireth=6f9619ff-8b86-d011-b42d-00c04fc964ff\r\n").status,
        401);
    const auto out = receiver_.post("/logout", "", mine + ours);
    EXPECT_EQ(out.status, 204);
    EXPECT_EQ(out.header("set-cookie"), "mireth=; Path=/; Max-Age=0; HttpOnly; SameSite=Strict");
    EXPECT_EQ(receiver_.get("/api/sessions", mine).status, 401);
}

TEST_F(Guarded, ALoginEndsAfterTwelveHours) {
    const auto mine = cookie();
    receiver_.passSeconds(12 * 3600 - 1);
    EXPECT_EQ(receiver_.get("/api/sessions", mine).status, 200);
    receiver_.passSeconds(1);
    EXPECT_EQ(receiver_.get("/api/sessions", mine).status, 401);
}

TEST_F(Guarded, AWrongTokenIsRefusedAndReportedUntilTooManyWere) {
    EXPECT_EQ(logIn("viewing-token-012345678").status, 401);
    EXPECT_EQ(logIn(uploadToken).status, 401);
    const std::string report = "a login with a wrong token was refused";
    EXPECT_EQ(receiver_.takeReports(), (Reports{report, report}));
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(logIn("wrong-token-0123456789").status, 401);
    }
    EXPECT_EQ(receiver_.takeReports().size(), 8U);
    const auto late = logIn("wrong-token-0123456789");
    EXPECT_EQ(late.status, 429);
    EXPECT_EQ(late.header("retry-after"), "5");
    EXPECT_EQ(receiver_.takeReports(), Reports{});
    receiver_.passSeconds(2);
    EXPECT_EQ(logIn("wrong-token-0123456789").status, 401);
}

TEST_F(Guarded, WrongTokensLockNobodyOut) {
    for (int i = 0; i < 50; ++i) {
        logIn("wrong-token-0123456789");
    }
    // Nor do many who know it.
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(logIn(viewingToken).status, 204);
    }
}

TEST_F(Guarded, ALoginOfAnotherShapeIsRefused) {
    for (const auto* const body : {"", "[]", "{}", R"({"token":7})", R"({"token":"x","y":1})", "token=x"}) {
        EXPECT_EQ(receiver_.post("/login", body, ours).status, 400) << body;
    }
    EXPECT_EQ(receiver_.post("/login", std::string(2000, ' '), ours).status, 413);
    EXPECT_EQ(receiver_.get("/login").status, 405);
    EXPECT_EQ(receiver_.get("/logout").status, 405);
}

TEST_F(Guarded, ProgramsShowTheTokenItself) {
    const auto with = [&](const std::string& value) {
        return receiver_.get("/api/sessions", "Authorization: " + value + "\r\n").status;
    };
    EXPECT_EQ(with(std::string("Bearer ") + viewingToken), 200);
    EXPECT_EQ(with(std::string("Bearer ") + uploadToken), 401);
    EXPECT_EQ(with(std::string("Basic ") + viewingToken), 401);
    EXPECT_EQ(with("Bearer "), 401);
}

TEST(SecureCookies, OnlyTravelOverTlsAndToThisHost) {
    RunningReceiver receiver(R"({"default":{}})", std::nullopt,
                             {.viewingToken = viewingToken, .hosts = {}, .secure = true});
    const auto login = receiver.post("/login", std::string(R"({"token":")") + viewingToken + R"("})", ours)
                           .header("set-cookie");
    EXPECT_TRUE(login.starts_with("__Host-mireth="));
    EXPECT_TRUE(login.ends_with("; SameSite=Strict; Secure"));
}

class Changes : public testing::Test {
  protected:
    int remove(const std::string& headers) {
        const auto id = receiver_.createSession();
        const int status = request(receiver_.port(), "DELETE", "/api/sessions/" + id, "", headers).status;
        EXPECT_EQ(receiver_.get("/api/sessions/" + id).status, status == 204 ? 404 : 200) << headers;
        return status;
    }

    RunningReceiver receiver_;
};

TEST_F(Changes, ComeFromTheReceiversOwnPageOnly) {
    EXPECT_EQ(remove(ours), 204);
    const std::string header = ours;
    EXPECT_EQ(remove(header + "Origin: http://localhost\r\nSec-Fetch-Site: same-origin\r\n"), 204);
    EXPECT_EQ(remove(header + "Origin: https://LOCALHOST\r\nSec-Fetch-Site: none\r\n"), 204);
    EXPECT_EQ(remove(""), 403);
    EXPECT_EQ(remove("X-Mireth-Request: 0\r\n"), 403);
    EXPECT_EQ(remove(header + "Origin: http://localhost.evil.example\r\n"), 403);
    EXPECT_EQ(remove(header + "Origin: http://localhost:1\r\n"), 403);
    EXPECT_EQ(remove(header + "Origin: null\r\n"), 403);
    EXPECT_EQ(remove(header + "Sec-Fetch-Site: cross-site\r\n"), 403);
    EXPECT_EQ(remove(header + "Sec-Fetch-Site: same-site\r\n"), 403);
}

TEST(Hosts, OtherNamesAreTurnedAwayFromTheViewingSide) {
    RunningReceiver receiver(R"({"default":{}})", std::nullopt, {.hosts = {"replay.example"}});
    const auto statusFor = [&](const std::string& host, const std::string& target = "/api/sessions") {
        const RawConnection connection(receiver.port());
        connection.send("GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
        return connection.receive().status;
    };
    for (const auto* const host : {"localhost", "localhost:8080", "LocalHost", "127.0.0.1:1", "10.0.0.7",
                                   "[::1]:8080", "[::1]", "replay.example", "Replay.Example:443"}) {
        EXPECT_EQ(statusFor(host), 200) << host;
    }
    for (const auto* const host :
         {"evil.example", "localhost.evil.example", "replay.example.evil", "", "1.2.3", "[::1", "[evil]",
          "localhost:", "localhost:x", "replay.example@evil", "127.0.0.1.evil.example"}) {
        EXPECT_EQ(statusFor(host), 421) << host;
        EXPECT_EQ(statusFor(host, "/"), 421) << host;
    }
    // Clients make the host of their log posts themselves, and monitoring has its own names.
    EXPECT_EQ(statusFor("us-west.sr.example", "/app-insights/v1/b/p/sessionReplayConfig"), 200);
    EXPECT_EQ(statusFor("10-0-0-7.pod.example", "/healthz"), 200);
}

}  // namespace
}  // namespace mireth::receiver
