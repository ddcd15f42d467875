// Programs that were never built for it are recorded, and stay as they are.
#include <filesystem>

#include "endtoend/support/Video.hpp"
#include "qt/support/Attached.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Json;

constexpr const char* withoutThreads =
    "M-VEX: the making of Qt's services threw: Resource temporarily unavailable\n";

class EndToEndQtAttach : public Attached {
  protected:
    void expectFramesOfTheLabel(const Json& session) const {
        const Json report = receiver_->show(session.at("id"));
        std::size_t frames = 0;
        for (const Json& chunk : report.at("chunks")) {
            for (const auto& frame : endtoend::decodeFrames(chunk.at("path"))) {
                ++frames;
                EXPECT_EQ(frame.pixelWidth(), 250U);
                EXPECT_EQ(
                    endtoend::findPixel(frame, [](endtoend::Rgb color) { return saturation(color) > 24; }),
                    std::nullopt);
                EXPECT_LE(endtoend::distance(endtoend::pixelAt(frame, 125, 250), {188, 188, 188}), 8);
            }
        }
        EXPECT_GE(frames, 2U);
    }
};

TEST_F(EndToEndQtAttach, AProgramsStatusOutputAndChildrenStayItsOwn) {
    const auto alone = endtoend::runProcess({MIRETH_PLAIN_PROGRAM});
    const auto attached = attach({MIRETH_PLAIN_PROGRAM});
    EXPECT_EQ(alone.status, 7);
    EXPECT_EQ(attached.status, 7);
    EXPECT_EQ(attached.out, alone.out);
    EXPECT_EQ(attached.errors, alone.errors);
}

TEST_F(EndToEndQtAttach, WhatItsEnvironmentHeldBeforeIsThereAgain) {
    for (const char* const value : {"", "of-the-users-own"}) {
        for (const char* const variable : {"QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH", "MIRETHVEX_INFO"}) {
            setenv(variable, value, 1);
        }
        const auto alone = endtoend::runProcess({MIRETH_PLAIN_PROGRAM});
        const auto attached = attach({MIRETH_PLAIN_PROGRAM});
        EXPECT_EQ(attached.out, alone.out);
        EXPECT_EQ(attached.errors, alone.errors);
        for (const char* const variable : {"QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH", "MIRETHVEX_INFO"}) {
            unsetenv(variable);
        }
    }
    EXPECT_EQ(receiver_->sessions().size(), 2U);
}

TEST_F(EndToEndQtAttach, ItsMainWindowIsRecordedMaskedUntilItsEnd) {
    EXPECT_EQ(attach({MIRETH_PLAIN_PROGRAM}).status, 7);
    const auto sessions = receiver_->sessions();
    ASSERT_EQ(sessions.size(), 1U);
    expectFramesOfTheLabel(sessions[0]);
}

TEST_F(EndToEndQtAttach, AnInformationFileIsFoundFromWhereverTheProgramIsStarted) {
    const auto file = std::filesystem::relative(info());
    ASSERT_EQ(endtoend::runProcess({MIRETH_ATTACH_PROGRAM, "--sr-endpoint", receiver_->origin(), "--info",
                                    file, "/bin/sh", "-c", "cd / && exec " MIRETH_PLAIN_PROGRAM})
                  .status,
              7);
    setenv("MIRETHVEX_INFO", file.c_str(), 1);
    EXPECT_EQ(endtoend::runProcess({MIRETH_ATTACH_PROGRAM, "--sr-endpoint", receiver_->origin(), "/bin/sh",
                                    "-c", "cd / && exec " MIRETH_PLAIN_PROGRAM})
                  .status,
              7);
    unsetenv("MIRETHVEX_INFO");
    EXPECT_EQ(receiver_->sessions().size(), 2U);
}

TEST_F(EndToEndQtAttach, ADialogThatIsAProgramsMainWindowIsRecorded) {
    EXPECT_EQ(attach({MIRETH_PLAIN_PROGRAM, "dialog"}).status, 7);
    ASSERT_EQ(receiver_->sessions().size(), 1U);
    expectFramesOfTheLabel(receiver_->sessions()[0]);
}

TEST_F(EndToEndQtAttach, TheWindowAfterALogInIsRecordedInASessionOfItsOwn) {
    EXPECT_EQ(attach({MIRETH_PLAIN_PROGRAM, "log-in"}).status, 7);
    const auto sessions = receiver_->sessions();
    ASSERT_EQ(sessions.size(), 2U);
    for (const Json& session : sessions) {
        expectFramesOfTheLabel(session);
    }
}

TEST_F(EndToEndQtAttach, WithoutAServiceAProgramStaysAsItIs) {
    const auto alone = endtoend::runProcess({MIRETH_PLAIN_PROGRAM});
    const auto ended = endtoend::runProcess({MIRETH_ATTACH_PROGRAM, "--sr-endpoint", "http://127.0.0.1:9",
                                             "--info", info(), MIRETH_PLAIN_PROGRAM});
    EXPECT_EQ(ended.status, 7);
    EXPECT_EQ(ended.errors, alone.errors);
}

TEST_F(EndToEndQtAttach, WhereThereAreNoThreadsAProgramRunsOnUnrecorded) {
    const auto alone = endtoend::runProcess({MIRETH_THREADLESS_PLAIN_PROGRAM});
    const auto attached = attach({MIRETH_THREADLESS_PLAIN_PROGRAM});
    EXPECT_EQ(alone.status, 7);
    EXPECT_EQ(attached.status, 7);
    EXPECT_EQ(attached.out, alone.out);
    EXPECT_EQ(attached.errors, alone.errors + withoutThreads);
    EXPECT_TRUE(receiver_->sessions().empty());
}

TEST_F(EndToEndQtAttach, AProgramThatIsNotThereIsSaidToBeMissing) {
    const auto ended = attach({"/nowhere/program"});
    EXPECT_EQ(ended.status, 127);
    EXPECT_NE(ended.errors.find("/nowhere/program"), std::string::npos);
}

TEST_F(EndToEndQtAttach, WithoutAProgramItSaysSo) {
    EXPECT_EQ(attach({}).status, 2);
}

class AttachCommandLine : public endtoend::EndToEnd {
  protected:
    static endtoend::Ended run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), MIRETH_ATTACH_PROGRAM);
        return endtoend::runProcess(std::move(arguments));
    }
    /// What is said before the program runs.
    static std::string warningsOf(std::vector<std::string> options) {
        options.emplace_back("/bin/true");
        const auto ended = run(std::move(options));
        EXPECT_EQ(ended.status, 0);
        return ended.errors;
    }
};

TEST_F(AttachCommandLine, WhatIsUnusableIsOneLineAndStatusTwo) {
    const auto errorOf = [](std::vector<std::string> arguments) {
        const auto ended = run(std::move(arguments));
        EXPECT_EQ(ended.status, 2);
        return ended.errors;
    };
    EXPECT_EQ(errorOf({}), "mireth-attach: name a program to run\n");
    EXPECT_EQ(errorOf({"--brand"}), "mireth-attach: --brand: needs a value, ID\n");
    EXPECT_EQ(errorOf({"--brand", "", "/bin/true"}), "mireth-attach: --brand: must not be empty\n");
    EXPECT_EQ(errorOf({"--bogus", "/bin/true"}),
              "mireth-attach: The following argument was not expected: --bogus\n");
}

TEST_F(AttachCommandLine, WhatCannotBeUsedForRecordingIsWarnedOfOnce) {
    const auto missing = path("none.json");
    EXPECT_EQ(warningsOf({"--info", missing}),
              "mireth-attach: cannot read '" + missing + "': No such file or directory\n");
    test::writeFile(path("info.json"), R"({"DEVICE_IDIOM": "watch", "SR_ENDPOINT_URL": 1})");
    EXPECT_EQ(
        warningsOf({"--info", path("info.json")}),
        "mireth-attach: SR_ENDPOINT_URL in the information dictionary: is no text and counts as absent\n"
        "mireth-attach: DEVICE_IDIOM in the information dictionary: must be \"phone\", \"pad\", \"desktop\" "
        "or \"television\", not \"watch\"\n");
    EXPECT_TRUE(warningsOf({"--sr-endpoint", "ftp://x"}).starts_with("mireth-attach: --sr-endpoint: "));
    EXPECT_EQ(warningsOf({"--kelda-endpoint", "https://x.example/"}),
              "mireth-attach: --kelda-endpoint: \"https://x.example/\" must not end in a slash\n");
    EXPECT_EQ(warningsOf({"--sr-endpoint", "https://x.example"}), "");
}

TEST_F(AttachCommandLine, WhatFollowsTheProgramIsItsOwn) {
    EXPECT_EQ(run({"/bin/echo", "--brand"}).out, "--brand\n");
    EXPECT_EQ(run({"--", "/bin/echo", "--", "-x"}).out, "-- -x\n");
}

TEST_F(AttachCommandLine, TheHelpTellsOfTheProgramAndItsArguments) {
    const auto ended = run({"--help"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_NE(ended.out.find("mireth-attach [OPTIONS] PROGRAM [ARGUMENTS]"), std::string::npos) << ended.out;
}

}  // namespace

}  // namespace mireth::qttest
