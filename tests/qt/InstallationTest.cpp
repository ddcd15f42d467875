// What an app is told where the library has nothing to stand on.
#include "endtoend/support/EndToEnd.hpp"

namespace mireth::qttest {

namespace {

TEST(EndToEndQtInstallation, WithoutThreadsEveryCallAnswersAndTheAppRunsOn) {
    const auto ended = endtoend::runProcess({MIRETH_THREADLESS_HOST_PROGRAM});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out,
              "install: false\n"
              "initializeProject: cannotGetKeyWindow\n"
              "hasActiveSession: false\n"
              "started: cannotGetKeyWindow\n"
              "pause: notInitialized\n"
              "resume: notInitialized\n"
              "stopped: notInitialized\n");
    EXPECT_THAT(ended.errors, testing::StartsWith("M-VEX: the making of Qt's services threw: "));
}

TEST(EndToEndQtInstallation, RecordsInOneApplicationOfAProcessAndRefusesBeforeItAndAfterIt) {
    const auto ended = endtoend::runProcess({MIRETH_TWICE_PROGRAM});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.out,
              "before: false cannotGetKeyWindow\n"
              "first: true success\n"
              "second: false cannotGetKeyWindow\n");
    EXPECT_EQ(ended.errors,
              "M-VEX: there is no QGuiApplication to record\n"
              "M-VEX: there is no QGuiApplication to record\n"
              "M-VEX: the QGuiApplication that was to be recorded is gone\n");
}

}  // namespace

}  // namespace mireth::qttest
