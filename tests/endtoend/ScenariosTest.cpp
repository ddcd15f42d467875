// The scenario files that come with the project, and files and options that are none.
#include <algorithm>

#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

class EndToEndExamples : public EndToEnd, public testing::WithParamInterface<std::string> {};

TEST_P(EndToEndExamples, AnswersAsItExpects) {
    const auto receiver = startReceiver();
    const auto run = playFile(exampleScenario(GetParam()), receiver->origin());
    EXPECT_EQ(run.ended.status, 0);
    EXPECT_EQ(run.ended.errors, "");
    EXPECT_EQ(run.end().at("event"), "end");
    EXPECT_EQ(run.end().at("hasActiveSession"), false);
    EXPECT_EQ(receiver->sessions().size(), run.sessionIds().size());
}

INSTANTIATE_TEST_SUITE_P(Files, EndToEndExamples, testing::ValuesIn(exampleNames()), asTestName);

class EndToEndExpectations : public EndToEnd {};

TEST_F(EndToEndExpectations, AnAnswerThatIsNotExpectedEndsWithStatusTwo) {
    const auto receiver = startReceiver();
    const auto run = play(scenarioOf({{{"at", 0}, {"call", "stopRecording"}, {"expect", "success"}},
                                      {{"at", 1}, {"call", "startRecording"}, {"expect", "success"}},
                                      {{"at", 2}, {"call", "pauseRecording"}, {"expect", "alreadyPaused"}},
                                      {{"at", 3}, {"call", "stopRecording"}}}),
                          receiver->origin());
    EXPECT_EQ(run.ended.status, 2);
    EXPECT_THAT(run.ended.errors,
                testing::AllOf(
                    testing::HasSubstr("$.steps[0]: stopRecording answered notStarted, not success\n"),
                    testing::HasSubstr("$.steps[2]: pauseRecording answered success, not alreadyPaused\n")));
    EXPECT_EQ(std::ranges::count(run.ended.errors, '\n'), 2);
    EXPECT_THAT(run.results(), testing::Contains("stopRecording success")) << "the script runs to its end";
}

TEST_F(EndToEndExpectations, ASessionThatIsLeftRunningIsNamedAtTheEnd) {
    const auto receiver = startReceiver();
    const auto run = play(scenarioOf({{{"at", 0}, {"call", "startRecording"}}, {{"at", 11}, {"wait", true}}}),
                          receiver->origin());
    EXPECT_EQ(run.ended.status, 0);
    EXPECT_EQ(run.end().at("hasActiveSession"), true);
    EXPECT_EQ(run.end().at("state"), "started");
    EXPECT_EQ(receiver->sessions().at(0).at("state"), "open");
    EXPECT_EQ(receiver->sessions().at(0).at("chunks"), 1);
}

struct BadFile {
    const char* name;
    std::string text;
    /// What its one line on standard error says, beside the file's name.
    const char* complaint;
};

void PrintTo(const BadFile& file, std::ostream* out) {
    *out << file.name;
}

class EndToEndBadFile : public EndToEnd, public testing::WithParamInterface<BadFile> {};

TEST_P(EndToEndBadFile, IsNamedInOneLine) {
    const std::string file = path("bad.json");
    test::writeFile(file, GetParam().text);
    const auto run = playFile(file, "http://127.0.0.1:9");
    EXPECT_EQ(run.ended.status, 1);
    EXPECT_EQ(run.ended.out, "");
    EXPECT_EQ(std::ranges::count(run.ended.errors, '\n'), 1) << run.ended.errors;
    EXPECT_THAT(run.ended.errors, testing::StartsWith("mireth-phone: " + file + ": "));
    EXPECT_THAT(run.ended.errors, testing::HasSubstr(GetParam().complaint));
}

std::string withSteps(const std::string& steps) {
    return R"({"screens":[{"name":"S"}],"steps":[)" + steps + "]}";
}

INSTANTIATE_TEST_SUITE_P(
    Files, EndToEndBadFile,
    testing::Values(
        BadFile{"Empty", "", ""}, BadFile{"NoJson", "phone", ""}, BadFile{"NoObject", "[]", "$"},
        BadFile{"NoScreens", R"({"screens":[],"steps":[]})", "$.screens"},
        BadFile{"NoSteps", R"({"screens":[{"name":"S"}]})", "\"steps\""},
        BadFile{"UnknownKey", R"({"screens":[{"name":"S"}],"steps":[],"colour":1})", "\"colour\""},
        BadFile{"UnknownClass",
                R"({"screens":[{"name":"S","views":[{"class":"Lable","frame":[0,0,1,1]}]}],"steps":[]})",
                "$.screens[0].views[0].class"},
        BadFile{
            "MissingPicture",
            R"({"screens":[{"name":"S","views":[{"class":"ImageView","frame":[0,0,1,1],"image":"no.png"}]}],"steps":[]})",
            "no.png"},
        BadFile{"NoFrame", R"({"screens":[{"name":"S","views":[{}]}],"steps":[]})", "$.screens[0].views[0]"},
        BadFile{"BadColour", R"({"screens":[{"name":"S","background":"red"}],"steps":[]})",
                "$.screens[0].background"},
        BadFile{"TwoActions", withSteps(R"({"at":0,"wait":true,"call":"reset"})"), "$.steps[0]"},
        BadFile{"NoAction", withSteps(R"({"at":0})"), "$.steps[0]"},
        BadFile{"BeforeTheBeginning", withSteps(R"({"at":-1,"wait":true})"), "$.steps[0].at"},
        BadFile{"UnknownView", withSteps(R"({"at":0,"set":"none","hidden":true})"), "$.steps[0].set"},
        BadFile{"UnknownScreen", withSteps(R"({"at":0,"present":"none"})"), "$.steps[0].present"},
        BadFile{"ImpossibleAnswer", withSteps(R"({"at":0,"call":"startRecording","expect":"alreadyPaused"})"),
                "$.steps[0].expect"},
        BadFile{"Bomb", std::string(200'000, '['), ""}),
    [](const auto& file) { return std::string(file.param.name); });

class EndToEndBadOption : public EndToEnd {};

TEST_F(EndToEndBadOption, IsNamedInOneLine) {
    const std::string good = exampleScenario("unsupported-device");
    const std::vector<std::vector<std::string>> commands{{},
                                                         {path("missing.json")},
                                                         {path("")},
                                                         {good, good},
                                                         {"--speed", "0", good},
                                                         {"--speed", "fast", good},
                                                         {"--seed", "x", good},
                                                         {"--allow-tags", "network,nothing", good},
                                                         {"--ca-file", path("missing.pem"), good},
                                                         {"--sr-endpoint", "", good},
                                                         {"--unknown", good}};
    for (const auto& command : commands) {
        const auto run = runPhone(command);
        EXPECT_EQ(run.ended.status, 1) << testing::PrintToString(command);
        EXPECT_EQ(run.ended.out, "") << testing::PrintToString(command);
        EXPECT_THAT(run.ended.errors, testing::StartsWith("mireth-phone: "));
        EXPECT_EQ(std::ranges::count(run.ended.errors, '\n'), 1) << run.ended.errors;
    }
}

}  // namespace

}  // namespace mireth::endtoend
