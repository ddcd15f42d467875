// The steps in the life of the one session.
#include "PrivateSide/Orchestrator/SessionLife.hpp"

#include <gtest/gtest.h>

namespace mireth {
namespace {

const RemoteSessionInfo session{"S1", 17};

TEST(SessionLife, BeginsStopped) {
    const SessionLife life;
    EXPECT_TRUE(life.state().isStopped());
    EXPECT_FALSE(life.isBeginning());
    EXPECT_FALSE(life.isAbandoned());
    EXPECT_EQ(life.closing(), nullptr);
}

TEST(SessionLife, AStartThatIsGivenUpLeadsBackToStopped) {
    SessionLife life;
    life.prepare();
    EXPECT_EQ(life.state(), SessionState{SessionState::Starting{}});
    life.giveUp();
    EXPECT_TRUE(life.state().isStopped());
}

TEST(SessionLife, IsBeginningUntilThePartsAreStarted) {
    SessionLife life;
    life.prepare();
    {
        const auto beginning = life.begin(session);
        EXPECT_EQ(life.state(), SessionState{SessionState::Started{session}});
        EXPECT_TRUE(life.isBeginning());
    }
    EXPECT_FALSE(life.isBeginning());
    EXPECT_TRUE(life.state().isStarted());
}

TEST(SessionLife, APauseAndItsEndKeepTheSession) {
    SessionLife life;
    (void)life.begin(session);
    life.pause();
    EXPECT_EQ(life.state(), SessionState{SessionState::Paused{session}});
    life.resume();
    EXPECT_EQ(life.state(), SessionState{SessionState::Started{session}});
}

TEST(SessionLife, IsOfTheSessionUntilItsEndAlsoWhileItCloses) {
    SessionLife life;
    (void)life.begin(session);
    const auto closing = life.close();
    EXPECT_EQ(life.closing(), closing);
    EXPECT_EQ(life.state(), SessionState{SessionState::Started{session}});
    life.end();
    EXPECT_TRUE(life.state().isStopped());
    EXPECT_EQ(life.closing(), nullptr);
}

TEST(SessionLife, AnotherSessionDoesNotMeetTheClosingOfTheOneBefore) {
    SessionLife life;
    (void)life.begin(session);
    const auto first = life.close();
    life.end();
    (void)life.begin({"S2", 18});
    EXPECT_NE(life.close(), first);
}

TEST(SessionLife, IsAbandonedForGood) {
    SessionLife life;
    life.abandon();
    life.prepare();
    life.giveUp();
    EXPECT_TRUE(life.isAbandoned());
}

}  // namespace
}  // namespace mireth
