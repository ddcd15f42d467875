// A receiver that takes uploads from those who know its token only: the clients' addresses carry it.
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::endtoend {

namespace {

constexpr const char* token = "upload-token-0123456789";

class EndToEndAccess : public EndToEnd {
  protected:
    std::unique_ptr<Receiver> startGuarded() {
        test::writeFile(path("token"), std::string(token) + "\n");
        return startReceiver({}, {"--upload-token-file", path("token")});
    }
};

TEST_F(EndToEndAccess, ASessionArrivesThroughTheAddressWithTheToken) {
    const auto receiver = startGuarded();
    const auto run = play(recordingFor(12.5), receiver->origin() + "/t/" + token);
    EXPECT_EQ(run.ended.status, 0) << run.ended.errors;
    EXPECT_THAT(run.errors(), testing::IsEmpty());
    const Json session = receiver->show(run.sessionIds().at(0));
    EXPECT_EQ(session.at("session").at("state"), "closed");
    EXPECT_EQ(session.at("session").at("frames"), 25);
}

TEST_F(EndToEndAccess, WithoutTheTokenNothingBegins) {
    const auto receiver = startGuarded();
    for (const std::string prefix : {"", "/t/another-token-0123456789"}) {
        const auto run = play(recordingFor(3), receiver->origin() + prefix);
        EXPECT_TRUE(run.sessionIds().empty());
    }
    EXPECT_TRUE(receiver->sessions().empty());
}

}  // namespace

}  // namespace mireth::endtoend
