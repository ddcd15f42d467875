// What is typed: options that are unusable, alone or together, and the help.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "sqlite/SqliteStore.hpp"
#include "support/RawClient.hpp"
#include "support/ReceiverProgram.hpp"
#include "support/StoredSession.hpp"

namespace mireth::receiver::test {
namespace {

class CommandLine : public ReceiverProgram {
  protected:
    /// The one line that it ends with.
    std::string errorOf(std::vector<std::string> arguments) const {
        const auto result = run(std::move(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
        const std::string prefix = "mireth-receiver: ";
        EXPECT_TRUE(result.errors.starts_with(prefix)) << result.errors;
        return result.errors.substr(prefix.size(), result.errors.size() - prefix.size() - 1);
    }
};

TEST_F(CommandLine, AnAddressToListenOnIsCheckedBeforeAnythingElse) {
    EXPECT_EQ(errorOf({"--listen", "nonsense", "--data", data_}),
              "\"nonsense\" is no address to listen on; write HOST:PORT or [IPV6]:PORT");
    EXPECT_TRUE(
        errorOf({"--listen", "no..host:0", "--data", data_}).starts_with("cannot listen on no..host:0: "));
}

TEST_F(CommandLine, AFileThatCannotBeUsedIsNamedWithTheReason) {
    const auto none = directory_.file("none");
    const std::string missing = none + ": cannot be read: No such file or directory";
    EXPECT_EQ(errorOf({"--config", none, "--data", data_}), missing);
    EXPECT_EQ(errorOf({"--upload-token-file", none, "--data", data_}), missing);
    const auto config = directory_.write("c.json", R"({"default":{"samplingRate":"high"}})");
    EXPECT_EQ(errorOf({"--config", config, "--data", data_}),
              config + ": default.samplingRate: must be a number from 0 to 100, not \"high\"");
    EXPECT_EQ(errorOf({"show", "x", "--data", directory_.file("nowhere")}),
              "there is no receiver's data in " + directory_.file("nowhere"));
}

TEST_F(CommandLine, ACertificateAndItsKeyAreToldApart) {
    const auto text = directory_.write("text.pem", "no certificate");
    const auto made = [this](const std::string& name) {
        const auto certificate = directory_.file(name + ".pem");
        const auto key = directory_.file(name + ".key");
        EXPECT_EQ(
            runProgram({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                        "-nodes", "-keyout", key, "-out", certificate, "-subj", "/CN=localhost"})
                .status,
            0);
        return std::pair(certificate, key);
    };
    const auto [certificate, key] = made("a");
    const auto [otherCertificate, otherKey] = made("b");
    const auto tlsError = [&](const std::string& first, const std::string& second) {
        return errorOf(
            {"--listen", "127.0.0.1:0", "--tls-cert", first, "--tls-key", second, "--data", data_});
    };
    const auto none = directory_.file("none");
    const std::string missing = none + ": cannot be read: No such file or directory";
    EXPECT_EQ(tlsError(none, key), missing);
    EXPECT_EQ(tlsError(certificate, none), missing);
    EXPECT_TRUE(tlsError(text, key).starts_with(text + " is not a usable certificate"));
    EXPECT_TRUE(tlsError(certificate, text).starts_with(text + " is not a usable key"));
    EXPECT_TRUE(tlsError(certificate, otherKey).starts_with(otherKey + " is not the certificate's key"));
    EXPECT_EQ(errorOf({"--tls-cert", text}), "--tls-cert requires --tls-key");
}

TEST_F(CommandLine, AHostIsANameWithoutSchemeOrPort) {
    for (const std::string bad : {"", "a b", "http://x", "x:80"}) {
        EXPECT_EQ(errorOf({"--host", bad}), "--host: \"" + bad +
                                                "\" is no name of a host; write it without scheme or port, "
                                                "such as replay.example.org");
    }
}

TEST_F(CommandLine, AValueMustNotBeMissingOrEmpty) {
    for (const std::string option :
         {"--data", "--config", "--tls-cert", "--upload-token-file", "--viewing-token-file"}) {
        EXPECT_EQ(errorOf({option, ""}), option + ": must not be empty");
    }
    EXPECT_EQ(errorOf({"export", "s1", "--output", ""}), "--output: must not be empty");
    EXPECT_EQ(errorOf({"--listen"}), "--listen: needs a value, HOST:PORT");
    EXPECT_EQ(errorOf({"--print-ready=2"}), "--print-ready: takes no value");
}

TEST_F(CommandLine, WhatBelongsToServingDoesNotGoWithACommand) {
    EXPECT_EQ(errorOf({"--listen", "127.0.0.1:0", "list"}), "--listen: does not go with list");
    EXPECT_EQ(errorOf({"--print-ready", "show", "x"}), "--print-ready: does not go with show");
    EXPECT_NE(errorOf({"list", "--listen", "127.0.0.1:0"}).find("--listen"), std::string::npos);
    EXPECT_EQ(errorOf({"--data", data_, "list"}), "there is no receiver's data in " + data_);
}

TEST_F(CommandLine, ThereIsNoCommandToServe) {
    EXPECT_EQ(errorOf({"serve", "--help"}), "The following argument was not expected: serve");
}

TEST_F(CommandLine, AFileThatIsThereIsReplacedOnlyWhenAskedTo) {
    {
        const auto store = SqliteStore::open(data_, [] { return std::string("v1"); }, {});
        ASSERT_TRUE(store) << store.error();
        keep(**store, {.id = "s1"});
    }
    const auto file = directory_.write("film.mp4", "dear");
    EXPECT_EQ(errorOf({"export", "s1", "--data", data_, "--output", file}),
              file + ": is there already; --force replaces it");
    EXPECT_EQ(fileText(file), "dear");
    EXPECT_EQ(errorOf({"export", "s1", "--data", data_, "--output", file, "--force"}),
              "session \"s1\" has no chunks");
}

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
        EXPECT_EQ(help.out.find("TEXT"), std::string::npos) << help.out;
        for (const auto& word : words) {
            EXPECT_NE(help.out.find(word), std::string::npos) << arguments.front() << ": " << word;
        }
    };
    expectHelp({}, {"--listen", "--tls-cert", "--tls-key", "--data", "--config", "--print-ready",
                    "--behind-proxy", "--upload-token-file", "--viewing-token-file", "--host", "HOST:PORT",
                    "FILE", "DIR", "list [--data", "show SESSION", "export SESSION --output FILE"});
    expectHelp({"list"}, {"--data", "--json"});
    expectHelp({"show"}, {"SESSION", "--data", "--json"});
    expectHelp({"export"}, {"SESSION", "--output", "--force", "--data"});
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
