// https: the name that log posts go to, old protocol versions, and clients that speak plain HTTP.
#include <gtest/gtest.h>
#include <httplib.h>

#include <cstdlib>

#include "support/Program.hpp"
#include "support/RunningReceiver.hpp"

namespace mireth::receiver {
namespace {

using test::RunningReceiver;

class Tls : public testing::Test {
  protected:
    void SetUp() override {
        const auto made = test::runProgram(
            {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
             "-keyout", files_.key, "-out", files_.certificate, "-days", "2", "-subj", "/CN=localhost",
             "-addext", "subjectAltName=DNS:localhost,DNS:us-west.localhost"});
        ASSERT_EQ(made.status, 0) << made.errors;
        receiver_ = std::make_unique<RunningReceiver>(R"({"default":{},"limits":{"idleSeconds":2}})", files_);
    }

    const test::TemporaryDirectory directory_;
    const TlsFiles files_{.certificate = directory_.file("cert.pem"), .key = directory_.file("key.pem")};
    std::unique_ptr<RunningReceiver> receiver_;
};

TEST_F(Tls, ServesAnyNameOfItsCertificate) {
    httplib::SSLClient client("us-west.localhost", receiver_->port());
    client.set_hostname_addr_map({{"us-west.localhost", "127.0.0.1"}});
    client.set_ca_cert_path(files_.certificate);
    client.enable_server_certificate_verification(true);
    const auto response = client.Post("/WRTarrowEngine/Ajax.php?action=ClientLog&M_ZoneID=p&M_BID=b",
                                      "Message=m&LevelName=error", "application/x-www-form-urlencoded");
    ASSERT_TRUE(response) << httplib::to_string(response.error());
    EXPECT_EQ(response->status, 200);
    EXPECT_EQ(response->body, R"({"status":"Success"})");
    EXPECT_EQ(receiver_->store().strayLogLines()->size(), 1U);
}

TEST_F(Tls, TakesALargeUpload) {
    const auto id = [&] {
        Session session{.id = "S1", .brandId = "b1", .brandDc = "d", .projectId = "p1", .closedMillis = {}};
        EXPECT_TRUE(receiver_->store().addSession(session));
        return session.id;
    }();
    httplib::SSLClient client("127.0.0.1", receiver_->port());
    client.enable_server_certificate_verification(false);
    const auto upload = test::chunkUpload(id, 0, test::mp4({.bytesPerFrame = 500'000}));
    const auto response =
        client.Put("/mobile-sr-ingestion/v1/sessions/record-playback", upload.body(), upload.contentType());
    ASSERT_TRUE(response) << httplib::to_string(response.error());
    EXPECT_EQ(response->body, R"({"status":"SUCCESS"})");
    EXPECT_GT(receiver_->contents(id).chunks.at(0).bytes, 10'000'000);
}

TEST_F(Tls, RefusesTlsBeforeOneTwo) {
    httplib::SSLClient client("127.0.0.1", receiver_->port());
    client.enable_server_certificate_verification(false);
    SSL_CTX_set_security_level(client.ssl_context(), 0);
    SSL_CTX_set_min_proto_version(client.ssl_context(), TLS1_VERSION);
    SSL_CTX_set_max_proto_version(client.ssl_context(), TLS1_1_VERSION);
    EXPECT_FALSE(client.Get("/"));
}

TEST_F(Tls, PlainHttpAndSilenceGetNoAnswerAndHarmNothing) {
    EXPECT_EQ(receiver_->get("/").status, 0);
    const test::RawConnection silent(receiver_->port());
    EXPECT_EQ(silent.receive().status, 0);
    httplib::SSLClient client("127.0.0.1", receiver_->port());
    client.enable_server_certificate_verification(false);
    EXPECT_TRUE(client.Get("/"));
}

}  // namespace
}  // namespace mireth::receiver
