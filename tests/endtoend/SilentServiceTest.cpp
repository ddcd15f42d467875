// A service that takes a request and never says a word.
#include "endtoend/support/EndToEnd.hpp"
#include "integration/network/RawServer.hpp"

namespace mireth::endtoend {

namespace {

class EndToEndSilentService : public EndToEnd {};

TEST_F(EndToEndSilentService, IsGivenUpAfterAMinute) {
    const test::RawServer server([](test::Connection& connection) { connection.waitForClose(); });
    const auto begun = std::chrono::steady_clock::now();
    const auto run = play(recordingFor(1), server.origin());
    const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - begun;
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
    EXPECT_EQ(run.end().at("state"), "stopped");
    EXPECT_EQ(server.connections(), 1);
    EXPECT_GT(lasted.count(), 50);
    EXPECT_LT(lasted.count(), 90);
}

TEST_F(EndToEndSilentService, ThatHangsUpAfterAWhileFailsTheStartThen) {
    const test::RawServer server([](test::Connection& connection) {
        connection.readRequest();
        connection.pause(std::chrono::seconds(2));
    });
    const auto run = play(recordingFor(1), server.origin());
    EXPECT_EQ(run.resultOf("startRecording").at("reason"), "Failed to start recording: Network error.");
    EXPECT_EQ(run.resultOf("startRecording").at("at"), 0.0) << "a request takes no virtual time";
}

}  // namespace

}  // namespace mireth::endtoend
