// One seed and virtual time: the same session again, but for what the service makes up.
#include <filesystem>
#include <regex>

#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

class EndToEndDeterminism : public EndToEnd {
  protected:
    PhoneRun playCheckout(const std::string& seed, std::vector<std::string> more = {}) {
        std::filesystem::remove_all(caches());
        return playFile(exampleScenario("checkout"), receiver_->origin(),
                        {.seed = seed, .more = std::move(more)});
    }

    Json show(const PhoneRun& run) const { return receiver_->show(run.sessionIds().at(0)); }

    const std::unique_ptr<Receiver> receiver_ = startReceiver();
};

TEST_F(EndToEndDeterminism, TheSameSeedGivesTheSameOutput) {
    const auto first = playCheckout("7");
    const auto second = playCheckout("7");
    ASSERT_NE(first.sessionIds(), second.sessionIds());
    EXPECT_EQ(withoutSessions(first), withoutSessions(second));
}

TEST_F(EndToEndDeterminism, TheSameSeedGivesTheSameLogLinesAndRequestIdentifiers) {
    // The service names each of its answers anew.
    const auto ofTheRun = [](const PhoneRun& run) {
        static const std::regex requestId("x-request-id response header \\[[^\\]]*\\]");
        return std::regex_replace(withoutSessions(run), requestId, "x-request-id");
    };
    const auto first = ofTheRun(playCheckout("7", {"--allow-tags", "all"}));
    EXPECT_NE(first.find("x-transaction-id response header"), std::string::npos);
    EXPECT_EQ(first, ofTheRun(playCheckout("7", {"--allow-tags", "all"})));
    EXPECT_NE(first, ofTheRun(playCheckout("8", {"--allow-tags", "all"})));
}

TEST_F(EndToEndDeterminism, TheSameSeedGivesTheSameTimelineAndTheSameVideos) {
    const Json first = show(playCheckout("7"));
    const Json second = show(playCheckout("7"));
    EXPECT_EQ(first.at("timeline"), second.at("timeline"));
    ASSERT_EQ(first.at("chunks").size(), second.at("chunks").size());
    for (std::size_t index = 0; index < first.at("chunks").size(); ++index) {
        EXPECT_EQ(readFile(first.at("chunks")[index].at("path")),
                  readFile(second.at("chunks")[index].at("path")))
            << "chunk " << index;
    }
}

TEST_F(EndToEndDeterminism, TheSeedDecidesWhichSessionsAreSampled) {
    const auto receiver = startReceiver({{"default", {{"samplingRate", 50}}}});
    std::string answers;
    for (int seed = 0; seed < 12; ++seed) {
        const PhoneSettings settings{.seed = std::to_string(seed)};
        const auto run = play(recordingFor(1), receiver->origin(), settings);
        const std::string answer = run.resultOf("startRecording").at("result");
        EXPECT_EQ(play(recordingFor(1), receiver->origin(), settings).resultOf("startRecording").at("result"),
                  answer);
        EXPECT_THAT(answer, testing::AnyOf("success", "samplingRejected"));
        answers += answer;
    }
    EXPECT_NE(answers.find("success"), std::string::npos);
    EXPECT_NE(answers.find("samplingRejected"), std::string::npos);
}

}  // namespace

}  // namespace mireth::endtoend
