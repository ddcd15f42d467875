// A service that lies, redirects, breaks off or talks nonsense.
#include <filesystem>
#include <utility>

#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/ScriptedService.hpp"

namespace mireth::endtoend {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string withStatus(const std::string& status, const std::string& headers = "") {
    return "HTTP/1.1 " + status + "\r\n" + headers + "Connection: close\r\nContent-Length: 0\r\n\r\n";
}

struct Answer {
    const char* name;
    std::string response;
    const char* error;
};

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << answer.name;
}

std::vector<Answer> uselessAnswers() {
    return {
        {"Nothing", "", "Network error."},
        {"Noise", "\x16\x03\x01\x02\x03 no HTTP at all\r\n\r\n", "Network error."},
        {"HalfAHead", "HTTP/1.1 200 OK\r\nContent-Le", "Network error."},
        {"HalfABody", "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{\"status\":", "Network error."},
        {"EndlessHead", "HTTP/1.1 200 OK\r\nX: " + std::string(4 << 20, 'x') + "\r\n\r\n", "Network error."},
        {"EndlessBody", okWith(std::string(2 << 20, ' ')), "Network error."},
        {"Html", okWith("<html>It works!</html>"), "Decoding error."},
        {"NoMembers", okWith("{}"), "Decoding error."},
        {"WrongTypes", okWith(R"({"status":1,"samplingRate":"all","dataCenter":[],"customSignal":{}})"),
         "Decoding error."},
        {"Bomb", okWith(std::string(500'000, '[')), "Decoding error."},
        {"NotUtf8", okWith("{\"status\":\"\xFF\xFE\"}"), "Decoding error."},
        {"NoContent", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n", "Decoding error."},
        {"Redirect", withStatus("302 Found", "Location: http://127.0.0.1:9/\r\n"), "Request failed."},
        {"NotFound", withStatus("404 Not Found"), "Request failed."},
        {"ServerError", withStatus("500 Internal Server Error"), "Request failed."}};
}

class EndToEndHostileAnswer : public EndToEnd, public testing::WithParamInterface<Answer> {};

TEST_P(EndToEndHostileAnswer, ToTheConfigurationFailsTheStart) {
    const ScriptedService service({{Request::configuration, GetParam().response}});
    const auto run = play(recordingFor(1), service.origin());
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording fail", "stopRecording notStarted"));
    EXPECT_EQ(run.resultOf("startRecording").at("reason"),
              std::string("Failed to start recording: ") + GetParam().error);
    EXPECT_EQ(service.count(Request::create), 0U);
    EXPECT_EQ(service.requestLines().size(), 1U) << "nothing is tried again";
}

TEST_P(EndToEndHostileAnswer, ToTheCreationFailsTheStart) {
    const ScriptedService service({{Request::create, GetParam().response}});
    const auto run = play(recordingFor(1), service.origin());
    EXPECT_THAT(run.results(),
                ElementsAre("initializeProject success", "startRecording fail", "stopRecording notStarted"));
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), GetParam().error);
    EXPECT_EQ(run.end().at("state"), "stopped");
    EXPECT_EQ(service.count(Request::upload), 0U);
}

TEST_P(EndToEndHostileAnswer, ToAnUploadEndsTheSessionAndClosesIt) {
    const ScriptedService service({{Request::upload, GetParam().response}});
    const auto run = play(recordingFor(35), service.origin());
    EXPECT_THAT(run.results(), ElementsAre("initializeProject success", "startRecording success",
                                           "stopRecording notStarted"));
    EXPECT_THAT(run.errors(), Contains("Single chunk skipped: Error during chunk push."));
    // The status of an upload's answer may be absent, which is no error of decoding but no success either.
    const bool isReadable = GetParam().name == std::string("NoMembers");
    EXPECT_THAT(run.logged("Single chunk skipped"),
                Contains(HasSubstr(isReadable ? "statusCode" : GetParam().error)));
    EXPECT_EQ(service.count(Request::close), 1U);
    EXPECT_EQ(run.end().at("state"), "stopped");
}

TEST_P(EndToEndHostileAnswer, ToTheClosingFailsTheStop) {
    const ScriptedService service({{Request::close, GetParam().response}});
    const auto run = play(recordingFor(2), service.origin());
    EXPECT_EQ(run.resultOf("stopRecording").at("result"), "fail");
    EXPECT_EQ(run.resultOf("stopRecording").at("reason"), GetParam().error);
    EXPECT_EQ(run.end().at("state"), "stopped") << "ready for another start";
}

INSTANTIATE_TEST_SUITE_P(Answers, EndToEndHostileAnswer, testing::ValuesIn(uselessAnswers()),
                         [](const auto& answer) { return std::string(answer.param.name); });

class EndToEndHostileService : public EndToEnd {};

TEST_F(EndToEndHostileService, IsNotFollowedToAnotherHost) {
    const ScriptedService elsewhere;
    for (const auto* status : {"301 Moved Permanently", "302 Found", "303 See Other",
                               "307 Temporary Redirect", "308 Permanent Redirect"}) {
        for (const Request request :
             {Request::configuration, Request::create, Request::upload, Request::close}) {
            const ScriptedService service(
                {{request, withStatus(status, "Location: " + elsewhere.origin() + "/stolen\r\n")}});
            play(recordingFor(1), service.origin());
            EXPECT_EQ(service.count(request), 1U) << status;
        }
    }
    EXPECT_THAT(elsewhere.requestLines(), IsEmpty());
}

TEST_F(EndToEndHostileService, CannotWriteOutsideTheStoreWithASessionsId) {
    const std::vector<std::string> hostile{"../x",
                                           "../../../x",
                                           "a/b",
                                           "/x",
                                           "..",
                                           ".",
                                           "",
                                           "a\r\nX-Injected: 1",
                                           std::string("a\0b", 3),
                                           "a%2fb",
                                           "a?b#c",
                                           "a b",
                                           "sitzung-\xC3\xA4",
                                           std::string(129, 'a'),
                                           std::string(4096, 'a')};
    for (const auto& id : hostile) {
        const ScriptedService service({{Request::create, createdSession(id)}});
        const auto run = play(recordingFor(1), service.origin());
        EXPECT_EQ(run.resultOf("startRecording").at("result"), "fail") << id;
        EXPECT_EQ(run.resultOf("startRecording").at("reason").is_string(), true) << id;
        EXPECT_EQ(run.end().at("state"), "stopped") << id;
        EXPECT_EQ(service.count(Request::upload), 0U) << id;
        EXPECT_EQ(service.count(Request::close), 0U) << id;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path(""))) {
        EXPECT_NE(entry.path().extension(), ".mp4") << entry.path();
    }
}

TEST_F(EndToEndHostileService, CannotSendLogLinesElsewhereWithADataCentre) {
    Json steps{{{"at", 0}, {"call", "startRecording"}}, {{"at", 1}, {"call", "pauseRecording"}}};
    for (int line = 0; line < 60; ++line) {
        steps.push_back({{"at", 2}, {"reportScreenAppeared", "Screen"}});
    }
    steps.push_back({{"at", 4}, {"call", "stopRecording"}});
    const auto postsWith = [&](const std::string& dataCenter) {
        const ScriptedService service({{Request::configuration, configuredFor(dataCenter)}});
        const auto run = play(scenarioOf(steps), service.origin());
        EXPECT_THAT(run.results(), Contains("stopRecording success")) << dataCenter;
        EXPECT_EQ(service.count(Request::log), 0U) << dataCenter;
        return run.logged("Network request failed");
    };
    // No host of that name, so the attempt shows.
    EXPECT_THAT(postsWith("US_WEST"), Contains(HasSubstr("https://us-west.127.0.0.1:")));
    for (const auto* hostile : {"evil", "evil.com/", "evil/", "x@y", "x@127", "#", "%2f", "a b", "a:b", "a?b",
                                "a\r\nb", "\xC3\xA4", "[::1]", "-", "a\\b"}) {
        for (const auto& post : postsWith(hostile)) {
            EXPECT_THAT(post, HasSubstr(".127.0.0.1:")) << hostile;
            EXPECT_THAT(post, Not(HasSubstr("@"))) << hostile;
        }
    }
}

TEST_F(EndToEndHostileService, EndsTheSessionWithAnUploadWithoutAStatus) {
    for (const auto* answer :
         {"{}", R"({"status":null})", R"({"status":"ERROR"})", R"({"status":"THROTTLED"})"}) {
        const ScriptedService service({{Request::upload, okWith(answer)}});
        const auto run = play(recordingFor(35), service.origin());
        EXPECT_THAT(run.results(), Contains("stopRecording notStarted")) << answer;
        EXPECT_THAT(run.errors(), Contains("Single chunk skipped: Error during chunk push.")) << answer;
        EXPECT_EQ(service.count(Request::close), 1U) << answer;
    }
}

TEST_F(EndToEndHostileService, WithoutItsHeadersIsComplainedAbout) {
    const std::string body = R"({"status":"SUCCESS"})";
    const ScriptedService service({{Request::upload, "HTTP/1.1 200 OK\r\nContent-Length: " +
                                                         std::to_string(body.size()) + "\r\n\r\n" + body}});
    const auto run = play(recordingFor(1), service.origin());
    EXPECT_THAT(run.results(), Contains("stopRecording success"));
    EXPECT_THAT(run.errors(), ElementsAre("x-transaction-id response header not found",
                                          "x-request-id response header not found"));
}

TEST_F(EndToEndHostileService, ThatIsNotThereFailsTheStart) {
    std::string origin;
    {
        const ScriptedService gone;
        origin = gone.origin();
    }
    const auto run = play(recordingFor(1), origin);
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
}

TEST_F(EndToEndHostileService, OnAnAddressThatIsNoneFailsTheStart) {
    for (const auto* origin : {"nonsense", "http://", "ftp://127.0.0.1", "file:///etc/passwd", "http://[::1",
                               "http://127.0.0.1:99999"}) {
        // As the app's own information has it: of its options the phone would complain.
        auto scenario = recordingFor(1);
        scenario["bundle"] = {{"SR_ENDPOINT_URL", origin}, {"KELDA_ENDPOINT_URL", origin}};
        test::writeFile(path("scenario.json"), scenario.dump());
        const auto run = runPhone({"--caches", caches(), "--speed", "max", path("scenario.json")});
        EXPECT_EQ(run.resultOf("startRecording").value("result", ""), "fail") << origin << run.ended.errors;
        EXPECT_EQ(run.ended.status, 0) << origin;
    }
}

}  // namespace

}  // namespace mireth::endtoend
