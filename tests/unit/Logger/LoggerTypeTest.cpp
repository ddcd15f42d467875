#include "PrivateSide/Logger/LoggerType.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Headless/CapturedSystemLog.hpp"

namespace mireth {
namespace {

using headless::CapturedSystemLog;
using headless::SystemLogRecord;
using platform::SystemLogType;
using testing::ElementsAre;

TEST(StructuredLogger, WritesTheMessageAsOneRecordOfItsCategory) {
    const auto log = std::make_shared<CapturedSystemLog>();
    StructuredLogger logger(log, "M-VEX", "NETWORK");
    logger.info("a %s line");
    logger.error("two\nlines");
    EXPECT_THAT(log->records(),
                ElementsAre(SystemLogRecord{true, "M-VEX", "NETWORK", SystemLogType::info, "a %s line"},
                            SystemLogRecord{true, "M-VEX", "NETWORK", SystemLogType::error, "two\nlines"}));
}

TEST(LegacyLogger, WritesToThePlainLogByDefault) {
    const auto log = std::make_shared<CapturedSystemLog>(false);
    LegacyLogger logger(log, "M-VEX", "SIGNAL");
    logger.info("i");
    logger.error("e");
    EXPECT_THAT(log->records(),
                ElementsAre(SystemLogRecord{false, "M-VEX", "SIGNAL", SystemLogType::info, "i"},
                            SystemLogRecord{false, "M-VEX", "SIGNAL", SystemLogType::error, "e"}));
}

TEST(LegacyLogger, CallsTheCallableOfTheLevelWithSubsystemCategoryAndMessage) {
    std::vector<std::string> calls;
    const auto note = [&calls](std::string level) {
        return
            [&calls, level](std::string_view subsystem, std::string_view category, std::string_view message) {
                calls.push_back(level + " " + std::string(subsystem) + " " + std::string(category) + " " +
                                std::string(message));
            };
    };
    LegacyLogger logger("S", "C", note("info"), note("error"));
    logger.info("one");
    logger.error("two");
    EXPECT_THAT(calls, ElementsAre("info S C one", "error S C two"));
}

}  // namespace
}  // namespace mireth
