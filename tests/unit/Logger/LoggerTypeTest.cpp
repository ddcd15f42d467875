#include "PrivateSide/Logger/LoggerType.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "MirethVex/Headless/CapturedSystemLog.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

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

/// Throws whenever it is written to.
class ThrowingSystemLog final : public platform::SystemLog {
  public:
    bool hasStructuredLog() const override { return true; }
    void writeStructured(std::string_view, std::string_view, SystemLogType type, std::string_view) override {
        if (type == SystemLogType::info) {
            throw std::runtime_error("the journal is gone");
        }
        throw 42;
    }
    void writeLegacy(std::string_view, std::string_view, SystemLogType, std::string_view) override {}
};

struct PostedMessages final : RemoteLogPoster {
    void post(LogLevel, LogTag, const std::string& message, const AdditionalInfo&, bool) override {
        messages.push_back(message);
    }
    std::vector<std::string> messages;
};

TEST(ThrowingSinks, CostNeitherTheListenersNorTheRemoteLogTheLine) {
    MirethLog log(std::make_shared<ThrowingSystemLog>());
    const auto poster = std::make_shared<PostedMessages>();
    log.setRemotePoster(poster);
    log.setAllowedTags({LogTag::network, LogTag::memoryUse});
    std::vector<std::string> heard;
    log.addLogListener([&heard](LogTag, LogLevel, const std::string& line) { heard.push_back(line); });
    testing::internal::CaptureStderr();
    log.info(LogTag::network, "i");
    log.error(LogTag::network, "e");
    {
        const MemoryUseLines lines(log, "PublicSide/MirethSR");
    }
    const std::string complaints = testing::internal::GetCapturedStderr();
    EXPECT_THAT(heard, ElementsAre("i", "e", "MirethSR: Succesfully initialized",
                                   "MirethSR: Succesfully deinitialized"));
    EXPECT_THAT(poster->messages, ElementsAre("e"));
    EXPECT_NE(complaints.find("the journal is gone"), std::string::npos);
}

/// Reports what it is given as an error, as an app's own logging may.
class ReportingSystemLog final : public platform::SystemLog {
  public:
    bool hasStructuredLog() const override { return true; }
    void writeStructured(std::string_view, std::string_view, SystemLogType,
                         std::string_view message) override {
        messages.emplace_back(message);
        log->error(LogTag::signal, "reported: " + std::string(message));
        log->info(LogTag::signal, "reported");
    }
    void writeLegacy(std::string_view, std::string_view, SystemLogType, std::string_view) override {}

    MirethLog* log = nullptr;
    std::vector<std::string> messages;
};

TEST(ReportingSinks, HearNothingOfWhatTheyReport) {
    const auto sink = std::make_shared<ReportingSystemLog>();
    MirethLog log{std::shared_ptr<platform::SystemLog>(sink)};
    sink->log = &log;
    const auto poster = std::make_shared<PostedMessages>();
    log.setRemotePoster(poster);
    log.setAllowedTags({LogTag::signal});
    std::vector<std::string> heard;
    log.addLogListener([&heard](LogTag, LogLevel, const std::string& line) { heard.push_back(line); });
    log.error(LogTag::signal, "e");
    log.info(LogTag::signal, "i");
    EXPECT_THAT(sink->messages, ElementsAre("e", "i"));
    EXPECT_THAT(heard, ElementsAre("e", "i"));
    EXPECT_THAT(poster->messages, ElementsAre("e"));
}

}  // namespace
}  // namespace mireth
