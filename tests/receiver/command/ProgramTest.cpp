// The program itself: its ready line, its signals, its log.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/RawClient.hpp"
#include "support/ReceiverProgram.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

TEST_F(ReceiverProgram, PrintsItsAddressesWhenReadyAndEndsOnSignals) {
    for (const int signal : {SIGTERM, SIGINT}) {
        Program program(serving());
        const auto ready = nlohmann::json::parse(program.readLine());
        EXPECT_EQ(ready.at("event"), "ready");
        EXPECT_EQ(ready.at("data"), data_);
        const int port = portOf(ready);
        EXPECT_GT(port, 0);
        EXPECT_EQ(ready.at("sr"), "http://127.0.0.1:" + std::to_string(port));
        EXPECT_EQ(ready.at("kelda"), ready.at("sr"));
        EXPECT_EQ(request(port, "GET", "/app-insights/v1/b/p/sessionReplayConfig").status, 200);
        program.signal(signal);
        const auto result = program.wait();
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
    }
}

TEST_F(ReceiverProgram, TellsAPersonItsVersionItsAddressAndWhatIsOddInItsConfiguration) {
    const auto config = directory_.write("c.json", "{}");
    Program program(receiverCommand({"--listen", "127.0.0.1:0", "--data", data_, "--config", config}));
    while (!std::filesystem::exists(data_ + "/receiver.db")) {
        ::usleep(5'000);
    }
    program.signal(SIGTERM);
    const auto result = program.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors.find("mireth-receiver: in " + config + ": every project is unknown, "), 0U)
        << result.errors;
    EXPECT_NE(result.errors.find("\nmireth-receiver: version "), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find(", listening on http://127.0.0.1:"), std::string::npos);
}

TEST_F(ReceiverProgram, FinishesAnUploadThatIsUnderWayWhenItIsToldToEnd) {
    Program program(serving());
    const int port = portOf(nlohmann::json::parse(program.readLine()));
    const auto created = request(port, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                                 R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
    const std::string id = nlohmann::json::parse(created.body).at("sessionInfo").at("sessionId");
    const auto upload = chunkUpload(id, 0);
    const auto body = upload.body();
    const RawConnection connection(port);
    connection.send(
        "PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\nExpect: "
        "100-continue\r\nContent-Length: " +
        std::to_string(body.size()) + "\r\nContent-Type: " + upload.contentType() + "\r\n\r\n");
    connection.send(body.substr(0, 500));
    ::usleep(100'000);
    program.signal(SIGTERM);
    ::usleep(200'000);
    connection.send(body.substr(500));
    EXPECT_EQ(connection.receive().body, R"({"status":"SUCCESS"})");
    EXPECT_EQ(program.wait().status, 0);

    const auto list = run({"list", "--data", data_, "--json"});
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(nlohmann::json::parse(list.out).at("sessions").at(0).at("chunks"), 1);
    const auto show = run({"show", id, "--data", data_, "--json"});
    EXPECT_EQ(show.status, 0);
    const auto json = nlohmann::json::parse(show.out);
    EXPECT_EQ(json.at("session").at("frames"), 20);
    EXPECT_TRUE(std::filesystem::exists(std::string(json.at("chunks").at(0).at("path"))));
    EXPECT_NE(run({"show", id, "--data", data_}).out.find("ScreenChange"), std::string::npos);
    EXPECT_NE(run({"list", "--data", data_}).out.find(id), std::string::npos);
}

TEST_F(ReceiverProgram, KilledAtAnyMomentItKeepsWhatItAcknowledged) {
    std::string id;
    {
        Program program(serving());
        const int port = portOf(nlohmann::json::parse(program.readLine()));
        const auto created =
            request(port, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                    R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
        id = nlohmann::json::parse(created.body).at("sessionInfo").at("sessionId");
        const auto upload = chunkUpload(id, 0);
        const std::string type = "Content-Type: " + upload.contentType() + "\r\n";
        EXPECT_EQ(
            request(port, "PUT", "/mobile-sr-ingestion/v1/sessions/record-playback", upload.body(), type)
                .status,
            200);
        const RawConnection half(port);
        half.send("PUT /mobile-sr-ingestion/v1/sessions/record-playback HTTP/1.1\r\n" + type +
                  "Content-Length: 100000\r\n\r\n" +
                  Upload{.parts = {videoPart(std::string(20'000, 'x'))}}.body());
        ::usleep(200'000);
        program.signal(SIGKILL);
        EXPECT_EQ(program.wait().status, -1);
    }
    const auto videos = [&] {
        return std::distance(std::filesystem::directory_iterator(data_ + "/videos"), {});
    };
    EXPECT_EQ(videos(), 2);
    Program again(serving());
    again.readLine();
    EXPECT_EQ(videos(), 1);
    EXPECT_EQ(nlohmann::json::parse(run({"show", id, "--data", data_, "--json"}).out).at("chunks").size(),
              1U);
    again.signal(SIGTERM);
    EXPECT_EQ(again.wait().errors,
              "mireth-receiver: removed 1 videos that an interrupted upload left behind\n");
}

TEST_F(ReceiverProgram, ServesAndShowsDataThatItReachesThroughALink) {
    std::filesystem::create_directories(directory_.file("private"));
    std::filesystem::create_directory_symlink(directory_.file("private"), data_);
    Program program(serving());
    const int port = portOf(nlohmann::json::parse(program.readLine()));
    const auto created = request(port, "POST", "/mobile-sr-ingestion/v1/sessions/create",
                                 R"({"brandId":"b1","brandDc":"d","projectId":"p1","isTestSession":true})");
    const std::string id = nlohmann::json::parse(created.body).at("sessionInfo").at("sessionId");
    EXPECT_EQ(nlohmann::json::parse(run({"show", id, "--data", data_, "--json"}).out).at("session").at("id"),
              id);
    program.signal(SIGTERM);
    const auto result = program.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(ReceiverProgram, ListensOnIpv6) {
    Program program(serving("[::1]:0"));
    const auto ready = nlohmann::json::parse(program.readLine());
    EXPECT_EQ(ready.at("listen").get<std::string>().find("[::1]:"), 0U);
    EXPECT_EQ(ready.at("sr"), "http://" + ready.at("listen").get<std::string>());
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().errors, "");
}

TEST_F(ReceiverProgram, StrangersDoNotFillItsLog) {
    Program program(serving());
    const int port = portOf(nlohmann::json::parse(program.readLine()));
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(request(port, "POST", "/WRTarrowEngine/Ajax.php?action=ClientLog", "nothing").status, 400);
    }
    program.signal(SIGTERM);
    const auto errors = program.wait().errors;
    EXPECT_NE(errors.find("mireth-receiver: a log line was refused: "), std::string::npos);
    EXPECT_NE(errors.find(" more like it: a log line was refused\n"), std::string::npos);
    EXPECT_LT(std::ranges::count(errors, '\n'), 250);
}

}  // namespace
}  // namespace mireth::receiver::test
