// What can be said to the program when it is started, and what it says back.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "support/RawClient.hpp"
#include "support/ReceiverProgram.hpp"

namespace mireth::receiver::test {
namespace {

class CommandLine : public ReceiverProgram {};

TEST_F(CommandLine, WhereStrangersReachItItWantsTokensAndTls) {
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

TEST_F(CommandLine, NamesOfThisMachineNeedNoTokens) {
    auto command = serving();
    command.insert(command.end(), {"--host", "localhost", "--host", "127.0.0.1", "--host", "::1"});
    Program program(command);
    EXPECT_EQ(request(portOf(nlohmann::json::parse(program.readLine())), "GET", "/api/sessions").status, 200);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait().errors, "");
}

TEST_F(CommandLine, BadStartsEndWithOneLineAndStatusOne) {
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

TEST_F(CommandLine, AnUnknownSessionIsNamedSafely) {
    Program program(serving());
    program.readLine();
    const auto result = run({"show", "x\x1B[2J", "--data", data_});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "mireth-receiver: there is no session \"x\\u{1B}[2J\" in " + data_ + "\n");
}

TEST_F(CommandLine, HelpNamesEveryOption) {
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

TEST_F(CommandLine, AnUnusableCommandLineIsOneLineThatNamesTheProgram) {
    const auto result = run({"--bogus"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "mireth-receiver: The following argument was not expected: --bogus\n");
}

TEST_F(CommandLine, TheVersionIsOneLine) {
    const auto result = run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("mireth-receiver ")) << result.out;
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 1);
}

}  // namespace
}  // namespace mireth::receiver::test
