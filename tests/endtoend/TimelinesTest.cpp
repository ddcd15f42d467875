// The timelines that stand beside the example scenarios, event by event and to the millisecond.
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

class EndToEndTimelines : public EndToEnd, public testing::WithParamInterface<std::string> {};

TEST_P(EndToEndTimelines, ArriveAsTheyStandBesideTheScenario) {
    const auto receiver = startReceiver();
    const auto run = playFile(exampleScenario(GetParam()), receiver->origin());
    ASSERT_EQ(run.ended.status, 0) << run.ended.errors;
    ASSERT_EQ(run.sessionIds().size(), 1U) << run.ended.out;
    const Json arrived = receiver->show(run.sessionIds()[0]).at("timeline");
    const Json expected = exampleTimeline(GetParam());
    EXPECT_EQ(arrived, expected) << "differs by " << Json::diff(expected, arrived).dump(2);
}

INSTANTIATE_TEST_SUITE_P(Files, EndToEndTimelines, testing::ValuesIn(exampleTimelineNames()), asTestName);

}  // namespace

}  // namespace mireth::endtoend
