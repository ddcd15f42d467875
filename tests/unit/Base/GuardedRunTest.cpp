// What others throw is told in words and goes no further.
#include "Base/GuardedRun.hpp"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace mireth {
namespace {

using testing::ElementsAre;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(GuardedRun, WithoutAHandlerWhatIsThrownIsALineOnStandardError) {
    CaptureStderr();
    runGuarded("a host", [] { throw std::runtime_error("oops"); });
    runGuarded("a host", [] { throw 42; });
    runGuarded("a host", [] {});
    EXPECT_EQ(GetCapturedStderr(),
              "M-VEX: a host threw: oops\n"
              "M-VEX: a host threw: An error of an unknown kind.\n");
}

TEST(GuardedRun, AHandlerIsToldInstead) {
    std::vector<std::string> told;
    const auto handler = [&told](std::string_view description) { told.emplace_back(description); };
    CaptureStderr();
    runGuarded("a host", [] { throw std::runtime_error("oops"); }, handler);
    runGuarded("a host", [] {}, handler);
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_THAT(told, ElementsAre("a host threw: oops"));
}

TEST(GuardedRun, WhereTheHandlerThrowsTheCulpritsNameHasToDo) {
    CaptureStderr();
    runGuarded(
        "a host", [] { throw std::runtime_error("oops"); },
        [](std::string_view) { throw std::runtime_error("what now"); });
    EXPECT_EQ(GetCapturedStderr(), "M-VEX: a host threw\n");
}

}  // namespace
}  // namespace mireth
