// What of a flood of lines the operator gets to see.
#include "base/ReportThrottle.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

TEST(ReportThrottle, AFewLinesOfAKindPassAndTheRestIsCounted) {
    ReportThrottle throttle;
    ReportThrottle::Instant now{};
    for (int i = 0; i < 20; ++i) {
        const auto line = "a log line was refused: reason " + std::to_string(i);
        EXPECT_EQ(throttle.pass(line, now), Lines{line});
    }
    for (int i = 0; i < 1980; ++i) {
        EXPECT_EQ(throttle.pass("a log line was refused: too many", now), Lines{});
    }
    EXPECT_EQ(throttle.rest(), Lines{"1980 more like it: a log line was refused"});
    now += 999ms;
    EXPECT_EQ(throttle.pass("a log line was refused: too many", now), Lines{});
    now += 1ms;
    EXPECT_EQ(throttle.pass("a log line was refused: too many", now),
              Lines{"1981 more like it: a log line was refused"});
    EXPECT_EQ(throttle.rest(), Lines{"1 more like it: a log line was refused"});
}

TEST(ReportThrottle, AnotherKindIsNotHeldBackAndBringsTheCountAlong) {
    ReportThrottle throttle;
    ReportThrottle::Instant now{};
    for (int i = 0; i < 25; ++i) {
        throttle.pass("a chunk was answered ERROR: no", now);
    }
    EXPECT_EQ(throttle.pass("cannot keep a session: disk I/O error", now),
              Lines{"cannot keep a session: disk I/O error"});
    now += 1s;
    EXPECT_EQ(throttle.pass("listening", now),
              (Lines{"5 more like it: a chunk was answered ERROR", "listening"}));
    EXPECT_EQ(throttle.rest(), Lines{});
}

TEST(ReportThrottle, AfterAQuietWhileEverythingIsAsAtFirst) {
    ReportThrottle throttle;
    ReportThrottle::Instant now{};
    for (int i = 0; i < 20; ++i) {
        throttle.pass("x: 1", now);
    }
    now += 1h;
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(throttle.pass("x: 2", now), Lines{"x: 2"});
    }
    EXPECT_EQ(throttle.pass("x: 2", now), Lines{});
}

TEST(ReportThrottle, EndlesslyManyKindsShareOne) {
    ReportThrottle throttle;
    std::size_t passed = 0;
    for (int i = 0; i < 10'000; ++i) {
        passed += throttle.pass("session " + std::to_string(i) + ": gone", {}).size();
    }
    EXPECT_EQ(passed, ReportThrottle::mostKinds + static_cast<std::size_t>(ReportThrottle::burst));
    EXPECT_EQ(throttle.rest(), Lines{"9948 more like it: other lines"});
}

}  // namespace
}  // namespace mireth::receiver
