// An app may quit at any moment, with a session running: it neither crashes nor hangs nor complains.
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::qttest {

namespace {

class EndToEndQtQuitting : public endtoend::EndToEnd {
  protected:
    endtoend::Ended quit(const std::string& way) {
        return endtoend::runProcess({MIRETH_QUITTER_PROGRAM, way, receiver_->origin(), caches()});
    }

    const std::unique_ptr<endtoend::Receiver> receiver_ = startReceiver();
};

class EndToEndQtWaysToQuit : public EndToEndQtQuitting, public testing::WithParamInterface<std::string> {};

TEST_P(EndToEndQtWaysToQuit, EndsAsTheAppMeansToEnd) {
    const auto ended = quit(GetParam());
    EXPECT_FALSE(ended.gaveUp);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors, "");
}

INSTANTIATE_TEST_SUITE_P(Ways, EndToEndQtWaysToQuit,
                         testing::Values("quit-while-starting", "quit-while-running", "exit-in-a-slot",
                                         "application-goes-first", "finish-and-quit"),
                         endtoend::asTestName);

TEST_F(EndToEndQtQuitting, WhatIsRecordedIsDeliveredBeforeTheAppIsGone) {
    EXPECT_EQ(quit("finish-and-quit").status, 0);
    const auto sessions = receiver_->sessions();
    ASSERT_EQ(sessions.size(), 1U);
    EXPECT_EQ(sessions[0].at("chunks"), 1) << sessions[0].dump(1);
}

}  // namespace

}  // namespace mireth::qttest
