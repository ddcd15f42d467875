// mireth-phone as a process: exit statuses, output, determinism, against a service on a loopback port.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <fstream>
#include <sstream>

#include "FakeService.hpp"
#include "TemporaryFolder.hpp"

extern char** environ;

namespace mireth::phone {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct Outcome {
    int status = -1;
    std::string out;
    std::string error;
};

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class PhoneProcess : public ::testing::Test {
  protected:
    Outcome run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), MIRETH_PHONE);
        std::vector<char*> pointers;
        for (auto& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        const auto out = folder.path() / "out";
        const auto error = folder.path() / "error";
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        const int flags = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), flags, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, error.c_str(), flags, 0600);
        pid_t child = 0;
        const int spawned = posix_spawn(&child, MIRETH_PHONE, &actions, nullptr, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        int status = 0;
        if (spawned != 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
            return {-1, "", "the process did not end by itself"};
        }
        return {WEXITSTATUS(status), contentsOf(out), contentsOf(error)};
    }

    /// Plays `scenario` against the service at full speed.
    Outcome play(const std::string& scenario, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"--speed",
                                           "max",
                                           "--sr-endpoint",
                                           service.origin(),
                                           "--kelda-endpoint",
                                           service.origin(),
                                           "--caches",
                                           (folder.path() / "caches").string(),
                                           scenario};
        // The last one counts when an option is given twice.
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    std::string written(const std::string& scenario) const {
        const auto file = folder.path() / "scenario.json";
        std::ofstream(file) << scenario;
        return file.string();
    }

    static std::string example(const std::string& name) { return MIRETH_SCENARIOS "/" + name + ".json"; }

    TemporaryFolder folder;
    FakeService service;
};

TEST_F(PhoneProcess, DeliversASessionAndSaysSo) {
    const auto outcome = play(written(R"({"screens":[{"name":"Home"}],"steps":[
        {"at":0,"call":"startRecording","expect":"success"},{"at":11,"call":"stopRecording","expect":"success"}]})"));
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(
        outcome.out,
        R"({"at":0.0,"event":"result","call":"initializeProject","result":"success"})"
        "\n"
        R"({"at":0.0,"event":"result","call":"startRecording","result":"success",)"
        R"("message":"Successfully created session: S1","sessionId":"S1","sessionStartTimeMillis":1700000000000})"
        "\n"
        R"({"at":11.0,"event":"result","call":"stopRecording","result":"success"})"
        "\n"
        R"({"at":11.0,"event":"end","hasActiveSession":false,"state":"stopped"})"
        "\n");
    EXPECT_THAT(outcome.error, IsEmpty());
    EXPECT_EQ(service.countOf("record-playback"), 2U);
    EXPECT_EQ(service.countOf("close-session"), 1U);
}

TEST_F(PhoneProcess, TheSameSeedGivesTheSameOutputAndTheSameRequestsByteForByte) {
    const std::vector<std::string> tags{"--allow-tags", "all", "--seed", "7"};
    const auto first = play(example("masking"), tags);
    const auto firstRequests = service.requests();
    std::filesystem::remove_all(folder.path() / "caches");
    const auto second = play(example("masking"), tags);
    auto all = service.requests();
    EXPECT_EQ(first.status, 0) << first.error;
    EXPECT_GT(first.out.size(), 2000U);
    EXPECT_TRUE(first.out == second.out);
    ASSERT_EQ(all.size(), 2 * firstRequests.size());
    for (std::size_t index = 0; index < firstRequests.size(); ++index) {
        const auto& again = all[index + firstRequests.size()];
        EXPECT_EQ(firstRequests[index].path, again.path);
        EXPECT_TRUE(firstRequests[index].body == again.body) << firstRequests[index].path;
    }
}

TEST_F(PhoneProcess, AnotherSeedGivesOtherIdentifiers) {
    const auto failing =
        written(R"({"screens":[{"name":"Home"}],"steps":[{"at":0,"call":"startRecording"}]})");
    const std::vector<std::string> arguments{"--speed", "max", "--kelda-endpoint", "http://127.0.0.1:1",
                                             failing};
    auto other = arguments;
    other.insert(other.end(), {"--seed", "1"});
    const auto first = run(arguments);
    EXPECT_EQ(first.out, run(arguments).out);
    EXPECT_NE(first.out, run(other).out);
    EXPECT_THAT(first.out, HasSubstr(R"("call":"startRecording","result":"fail","reason":"Failed to start)"));
}

TEST_F(PhoneProcess, EveryExampleRunsAsItExpects) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(MIRETH_SCENARIOS)) {
        const std::string file = entry.path().string();
        if (file.ends_with(".json") && !file.ends_with(".timeline.json")) {
            const auto outcome = play(file);
            EXPECT_EQ(outcome.status, 0) << file << "\n" << outcome.error;
        }
    }
}

TEST_F(PhoneProcess, AnUnexpectedAnswerEndsWithStatusTwo) {
    const auto file = written(
        R"({"screens":[{"name":"Home"}],"steps":[{"at":0,"call":"pauseRecording","expect":"success"}]})");
    const auto outcome = play(file);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error,
              "mireth-phone: " + file + ": $.steps[0]: pauseRecording answered notStarted, not success\n");
    EXPECT_THAT(outcome.out, HasSubstr(R"("event":"end")"));
}

TEST_F(PhoneProcess, AnUnusableFileEndsWithStatusOneAndNothingOnStandardOutput) {
    const auto file = written(R"({"screens":[{"name":"Home"}],"steps":[{"at":0,"tap":[1]}]})");
    const auto outcome = play(file);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.error, "mireth-phone: " + file + ": $.steps[0].tap: must have 2 elements, and has 1\n");
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(run({"/nowhere/a.json"}).error,
                StartsWith("mireth-phone: /nowhere/a.json: cannot be read: No such file"));
    EXPECT_EQ(service.requests().size(), 0U);
}

TEST_F(PhoneProcess, PlainPrintsResultsForPeople) {
    const auto outcome = play(example("state-stopped"), {"--plain", "--allow-tags", "all"});
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_THAT(outcome.out, StartsWith("    0.000 s  initializeProject: success\n"));
    EXPECT_EQ(outcome.out.find('{'), std::string::npos);
}

TEST_F(PhoneProcess, PlainShowsWhatWentWrongOnStandardError) {
    const auto outcome = play(example("background"), {"--plain", "--kelda-endpoint", "http://127.0.0.1:1"});
    EXPECT_THAT(outcome.error, HasSubstr("    0.000 s  error in NETWORK: "));
    EXPECT_EQ(outcome.out.find("error in"), std::string::npos);
}

TEST_F(PhoneProcess, DumpsEveryCapturedImage) {
    const auto frames = folder.path() / "frames";
    const auto outcome = play(example("background"), {"--dump-frames", frames.string()});
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_TRUE(std::filesystem::exists(frames / "frame-00020.png"));
    EXPECT_FALSE(std::filesystem::exists(frames / "frame-00021.png"));
    // Width and height of the window in points, big-endian in the head of the file.
    EXPECT_EQ(contentsOf(frames / "frame-00001.png").substr(16, 8),
              std::string("\0\0\x01\x86\0\0\x03\x4c", 8));
}

TEST_F(PhoneProcess, DumpsEachImageOnceWhilePausedAndAfterAResizeToo) {
    const auto frames = folder.path() / "frames";
    const auto outcome = play(written(R"({"screens":[{"name":"Home"}],"steps":[
        {"at":0,"call":"startRecording"},{"at":2.2,"call":"pauseRecording"},
        {"at":4.2,"call":"resumeRecording"},{"at":6.2,"resize":[844,390]},
        {"at":9.2,"call":"stopRecording"}]})"),
                              {"--dump-frames", frames.string()});
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(frames), {}), 18);
    for (int number = 1; number <= 18; ++number) {
        const auto file =
            frames / ("frame-000" + std::to_string(number / 10) + std::to_string(number % 10) + ".png");
        const std::string portrait("\0\0\x01\x86\0\0\x03\x4c", 8);
        const std::string landscape("\0\0\x03\x4c\0\0\x01\x86", 8);
        EXPECT_EQ(contentsOf(file).substr(16, 8), number <= 12 ? portrait : landscape) << number;
    }
}

TEST_F(PhoneProcess, AFolderForFramesThatCannotBeMadeIsAnError) {
    const auto outcome = play(example("background"), {"--dump-frames", "/proc/nowhere"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.error,
                StartsWith("mireth-phone: --dump-frames: the folder /proc/nowhere cannot be made: "));
}

TEST_F(PhoneProcess, ACachesDirectoryThatCannotBeUsedIsAnErrorBeforeTheScriptBegins) {
    const auto file = written("a file");
    for (const std::string& caches : {std::string("/proc/nope"), file}) {
        const auto outcome = play(example("background"), {"--caches", caches});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_THAT(outcome.error,
                    StartsWith("mireth-phone: --caches: cannot create the directory '" + caches + "': "));
    }
    EXPECT_EQ(service.requests().size(), 0U);
}

TEST_F(PhoneProcess, ASessionLeftRunningIsSaidSo) {
    const auto outcome = play(written(
        R"({"screens":[{"name":"Home"}],"steps":[{"at":0,"call":"startRecording"},{"at":3,"wait":true}]})"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out,
                HasSubstr(R"({"at":3.0,"event":"end","hasActiveSession":true,"state":"started"})"));
}

TEST_F(PhoneProcess, PacedTimeGivesTheSameResultsOnThreads) {
    const auto outcome = play(written(R"({"screens":[{"name":"Home"}],"steps":[
        {"at":0,"call":"startRecording","expect":"success"},{"at":24,"call":"stopRecording","expect":"success"}]})"),
                              {"--speed", "20"});
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    // Forty-eight frames; a machine that others keep busy loses some, but not most of them.
    EXPECT_GE(service.countOf("record-playback"), 2U);
    EXPECT_LE(service.countOf("record-playback"), 3U);
    EXPECT_THAT(outcome.out, HasSubstr(R"("hasActiveSession":false,"state":"stopped"})"));
}

}  // namespace
}  // namespace mireth::phone
