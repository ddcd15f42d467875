// The lines that the phone prints, byte for byte.
#include "phone/Reporter.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace mireth::phone {
namespace {

using namespace std::chrono_literals;

/// What `write` writes through a reporter.
template <class Write>
std::string printed(std::unique_ptr<Reporter> (*make)(std::FILE*), Write write) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* out = ::open_memstream(&text, &size);
    write(*make(out));
    std::fclose(out);
    std::string result(text, size);
    std::free(text);
    return result;
}

TEST(JsonReporter, ASuccessfulStartNamesItsSession) {
    const auto line = printed(makeJsonReporter, [](Reporter& reporter) {
        reporter.answer(0s, CallAnswer::of("startRecording",
                                           SessionStartResult::success("Successfully created session: S1",
                                                                       {"S1", 1'700'000'000'000})));
    });
    EXPECT_EQ(
        line,
        R"({"at":0.0,"event":"result","call":"startRecording","result":"success",)"
        R"("message":"Successfully created session: S1","sessionId":"S1","sessionStartTimeMillis":1700000000000})"
        "\n");
}

TEST(JsonReporter, OnlyAFailureHasAReasonAndItMayBeNull) {
    const auto lines = printed(makeJsonReporter, [](Reporter& reporter) {
        reporter.answer(1500ms, CallAnswer::of("stopRecording", SessionCloseResult::fail("why")));
        reporter.answer(2s, CallAnswer::of("startRecording", SessionStartResult::fail(std::nullopt)));
        reporter.answer(4200ms, CallAnswer::of("pauseRecording", "alreadyPaused"));
    });
    EXPECT_EQ(lines, R"({"at":1.5,"event":"result","call":"stopRecording","result":"fail","reason":"why"})"
                     "\n"
                     R"({"at":2.0,"event":"result","call":"startRecording","result":"fail","reason":null})"
                     "\n"
                     R"({"at":4.2,"event":"result","call":"pauseRecording","result":"alreadyPaused"})"
                     "\n");
}

TEST(JsonReporter, LogLinesAndTheEnd) {
    const auto lines = printed(makeJsonReporter, [](Reporter& reporter) {
        reporter.log(0s, LogTag::lifecycle, LogLevel::error, "a \"quoted\" line\n\xff");
        reporter.end(31s, false, "stopped");
    });
    EXPECT_EQ(lines,
              R"({"at":0.0,"event":"log","tag":"LIFECYCLE","level":"error","line":"a \"quoted\" line\n)"
              "\xEF\xBF\xBD\"}\n"
              R"({"at":31.0,"event":"end","hasActiveSession":false,"state":"stopped"})"
              "\n");
}

std::unique_ptr<Reporter> plainWithoutErrors(std::FILE* out) {
    return makePlainReporter(out, stderr);
}

std::unique_ptr<Reporter> plainErrors(std::FILE* errors) {
    return makePlainReporter(stdout, errors);
}

TEST(PlainReporter, ShowsResultsOnlyOneToALine) {
    const auto lines = printed(plainWithoutErrors, [](Reporter& reporter) {
        reporter.log(0s, LogTag::lifecycle, LogLevel::info, "not shown");
        reporter.answer(1500ms, CallAnswer::of("stopRecording", SessionCloseResult::fail("two\nlines")));
        reporter.end(31s, true, "started");
    });
    EXPECT_EQ(lines,
              "    1.500 s  stopRecording: fail. two lines\n"
              "   31.000 s  end: started, a session is left running\n");
}

TEST(PlainReporter, ShowsErrorLinesBesideTheResultsAndNoOthers) {
    const auto lines = printed(plainErrors, [](Reporter& reporter) {
        reporter.log(0s, LogTag::lifecycle, LogLevel::info, "not shown");
        reporter.log(10500ms, LogTag::playback, LogLevel::error, "Failed to create chunk\nof 20 frames");
    });
    EXPECT_EQ(lines, "   10.500 s  error in PLAYBACK: Failed to create chunk of 20 frames\n");
}

}  // namespace
}  // namespace mireth::phone
