// The program itself: its command line, its ready line, its signals.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/Program.hpp"
#include "support/RawClient.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Upload.hpp"

namespace mireth::receiver::test {
namespace {

int portOf(const nlohmann::json& ready) {
    const std::string listen = ready.at("listen");
    return std::stoi(listen.substr(listen.rfind(':') + 1));
}

class ReceiverProgram : public testing::Test {
  protected:
    std::vector<std::string> serving(const std::string& listen = "127.0.0.1:0") const {
        return receiverCommand({"--listen", listen, "--data", data_, "--print-ready"});
    }
    ProgramResult run(std::vector<std::string> arguments) const {
        return runProgram(receiverCommand(std::move(arguments)));
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("data");
};

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

TEST_F(ReceiverProgram, WhereStrangersReachItItWantsTokensAndTls) {
    const auto upload = directory_.write("upload", "upload-token-0123456789\n");
    const auto viewing = directory_.write("viewing", "viewing-token-0123456789\n");
    const auto errorOf = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"--listen", "0.0.0.0:0", "--data", data_});
        const auto result = run(more);
        EXPECT_EQ(result.status, 1);
        return result.errors;
    };
    const std::vector<std::string> tokens{"--upload-token-file", upload, "--viewing-token-file", viewing};
    const std::string reachable = "mireth-receiver: strangers can reach 0.0.0.0:0: give ";
    const auto noTokens = reachable +
                          "--upload-token-file and --viewing-token-file, or listen on 127.0.0.1 " +
                          "without a proxy\n";
    EXPECT_EQ(errorOf({}), noTokens);
    EXPECT_EQ(errorOf({"--upload-token-file", upload}), noTokens);
    EXPECT_EQ(errorOf({"--viewing-token-file", viewing}), noTokens);
    EXPECT_EQ(errorOf(tokens),
              reachable + "--tls-cert and --tls-key, or --behind-proxy when a proxy does TLS\n");
    EXPECT_EQ(errorOf({"--upload-token-file", upload, "--viewing-token-file", upload, "--behind-proxy"}),
              "mireth-receiver: the two tokens are the same: who may upload could view everything\n");
    EXPECT_NE(errorOf({"--upload-token-file", directory_.write("short", "short")}).find("short: a token is"),
              std::string::npos);
    EXPECT_NE(errorOf({"--upload-token-file", directory_.file("none")}).find("none: cannot be read"),
              std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(data_));
    // Behind a proxy loopback is no protection.
    const auto proxied = run({"--listen", "127.0.0.1:0", "--behind-proxy", "--data", data_});
    EXPECT_EQ(proxied.errors.find("mireth-receiver: a proxy lets strangers reach the receiver: give"), 0U);
    // And a name that is not this machine's own tells of a proxy, whether or not it was mentioned.
    const auto named = run(
        {"--listen", "127.0.0.1:0", "--host", "localhost", "--host", "replay.example.org", "--data", data_});
    EXPECT_EQ(named.status, 1);
    EXPECT_EQ(
        named.errors.find("mireth-receiver: viewers call the receiver \"replay.example.org\": give --upload"),
        0U);

    auto command = serving("0.0.0.0:0");
    command.insert(command.end(), tokens.begin(), tokens.end());
    command.emplace_back("--behind-proxy");
    Program program(command);
    const int port = portOf(nlohmann::json::parse(program.readLine()));
    EXPECT_EQ(request(port, "GET", "/app-insights/v1/b/p/sessionReplayConfig").status, 403);
    EXPECT_EQ(
        request(port, "GET", "/t/upload-token-0123456789/app-insights/v1/b/p/sessionReplayConfig").status,
        200);
    EXPECT_EQ(request(port, "GET", "/api/sessions").status, 401);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().status, 0);
}

TEST_F(ReceiverProgram, NamesOfThisMachineNeedNoTokens) {
    auto command = serving();
    command.insert(command.end(), {"--host", "localhost", "--host", "127.0.0.1", "--host", "::1"});
    Program program(command);
    EXPECT_EQ(request(portOf(nlohmann::json::parse(program.readLine())), "GET", "/api/sessions").status, 200);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().errors, "");
}

TEST_F(ReceiverProgram, BadStartsEndWithOneLineAndStatusOne) {
    const auto errorOf = [this](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--data", data_});
        const auto result = run(std::move(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        return result.errors;
    };
    EXPECT_EQ(errorOf({"--listen", "nonsense"}),
              "mireth-receiver: \"nonsense\" is no address to listen on; write HOST:PORT or [IPV6]:PORT\n");
    EXPECT_EQ(errorOf({"--config", directory_.file("none")}),
              "mireth-receiver: " + directory_.file("none") + ": cannot be read\n");
    const auto config = directory_.write("c.json", R"({"default":{"samplingRate":"high"}})");
    EXPECT_EQ(errorOf({"--config", config}),
              "mireth-receiver: " + config + ": default.samplingRate: must be a number from 0.0 to 100.0\n");
    const auto text = directory_.write("text.pem", "no certificate");
    EXPECT_TRUE(errorOf({"--tls-cert", text, "--tls-key", text})
                    .starts_with("mireth-receiver: " + text + " is not a usable certificate"));
    EXPECT_NE(errorOf({"--tls-cert", text}).find("--tls-key"), std::string::npos);
    EXPECT_NE(errorOf({"--unknown"}).find("--unknown"), std::string::npos);
    EXPECT_EQ(run({"show", "x", "--data", directory_.file("nowhere")}).errors,
              "mireth-receiver: there is no receiver's data in " + directory_.file("nowhere") + "\n");
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

TEST_F(ReceiverProgram, AnUnknownSessionIsNamedSafely) {
    Program program(serving());
    program.readLine();
    const auto result = run({"show", "x\x1B[2J", "--data", data_});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "mireth-receiver: there is no session \"x\\u{1B}[2J\" in " + data_ + "\n");
}

TEST_F(ReceiverProgram, HelpNamesEveryOption) {
    const auto expectHelp = [this](std::vector<std::string> arguments,
                                   const std::vector<std::string>& words) {
        arguments.emplace_back("--help");
        const auto help = run(arguments);
        EXPECT_EQ(help.status, 0);
        for (const auto& word : words) {
            EXPECT_NE(help.out.find(word), std::string::npos) << arguments.front() << ": " << word;
        }
    };
    expectHelp(
        {}, {"--listen", "--tls-cert", "--tls-key", "--data", "--config", "--print-ready", "--behind-proxy",
             "--upload-token-file", "--viewing-token-file", "--host", "list", "show", "export"});
    expectHelp({"list"}, {"--data", "--json"});
    expectHelp({"show"}, {"SESSION", "--data", "--json"});
    expectHelp({"export"}, {"SESSION", "--output", "--data"});
}

TEST_F(ReceiverProgram, AnUnusableCommandLineIsOneLineThatNamesTheProgram) {
    const auto result = run({"--bogus"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "mireth-receiver: The following argument was not expected: --bogus\n");
}

TEST_F(ReceiverProgram, TheVersionIsOneLine) {
    const auto result = run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("mireth-receiver ")) << result.out;
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 1);
}

}  // namespace
}  // namespace mireth::receiver::test
