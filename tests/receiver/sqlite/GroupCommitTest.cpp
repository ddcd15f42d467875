// Changes that share a transaction: each is kept or undone by itself.
#include "sqlite/GroupCommit.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver {
namespace {

class GroupCommitTest : public testing::Test {
  protected:
    GroupCommitTest() { database_.execute("CREATE TABLE number (value INTEGER NOT NULL UNIQUE)"); }

    void insert(std::int64_t value) const {
        database_.prepare("INSERT INTO number(value) VALUES (?)").bind(value).run();
    }
    std::int64_t count() const {
        const Database other(directory_.file("test.db"), Database::Mode::read);
        auto row = other.prepare("SELECT count(*) FROM number");
        row.step();
        return row.whole(0);
    }

    const test::TemporaryDirectory directory_;
    const Database database_{directory_.file("test.db"), Database::Mode::write};
    std::mutex mutex_;
    GroupCommit commits_{database_, mutex_};
};

TEST_F(GroupCommitTest, AChangeIsDurableWhenItsRunReturns) {
    commits_.run([&] { insert(1); });
    EXPECT_EQ(count(), 1);
}

TEST_F(GroupCommitTest, WhoFailsIsUndoneAloneAndTold) {
    EXPECT_THROW(commits_.run([&] {
        insert(1);
        insert(1);
    }),
                 DatabaseError);
    EXPECT_EQ(count(), 0);
    commits_.run([&] { insert(1); });
    EXPECT_EQ(count(), 1);
}

TEST_F(GroupCommitTest, ChangesOfManyThreadsAreKeptOrUndoneEachByItself) {
    constexpr int threads = 8;
    constexpr int each = 25;
    std::atomic<int> refused = 0;
    std::vector<std::thread> all;
    for (int thread = 0; thread < threads; ++thread) {
        all.emplace_back([&, thread] {
            for (int i = 0; i < each; ++i) {
                commits_.run([&] { insert(thread * each + i); });
                try {
                    commits_.run([&] {
                        insert(-1 - thread * each - i);
                        insert(thread * each + i);  // is there already
                    });
                } catch (const DatabaseError&) {
                    ++refused;
                }
            }
        });
    }
    for (auto& thread : all) {
        thread.join();
    }
    EXPECT_EQ(refused, threads * each);
    EXPECT_EQ(count(), threads * each);
}

TEST_F(GroupCommitTest, ATransactionThatCannotBeginIsEverybodysError) {
    const Database other(directory_.file("test.db"), Database::Mode::write);
    database_.execute("PRAGMA busy_timeout = 10");
    {
        Transaction inTheWay(other, Transaction::Kind::write);
        EXPECT_THROW(commits_.run([&] { insert(1); }), DatabaseError);
    }
    commits_.run([&] { insert(1); });
    EXPECT_EQ(count(), 1);
}

}  // namespace
}  // namespace mireth::receiver
