#include "PrivateSide/Logger/MirethLog.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "MirethVex/Headless/CapturedSystemLog.hpp"

namespace mireth {
namespace {

using headless::CapturedSystemLog;
using headless::SystemLogRecord;
using platform::SystemLogType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct Posted {
    LogLevel level;
    LogTag tag;
    std::string message;
    AdditionalInfo additionalInfo;
    bool ignoreSampling;
    bool operator==(const Posted&) const = default;
};

class CapturingPoster final : public RemoteLogPoster {
  public:
    void post(LogLevel level, LogTag tag, const std::string& message, const AdditionalInfo& additionalInfo,
              bool ignoreSampling) override {
        posted.push_back({level, tag, message, additionalInfo, ignoreSampling});
    }
    std::vector<Posted> posted;
};

class Logger : public testing::Test {
  protected:
    void listen(const std::string& name) {
        log.addLogListener([this, name](LogTag tag, LogLevel level, const std::string& line) {
            heard.push_back(name + " " + std::string(key(tag)) + " " + std::string(rawValue(level)) + " " +
                            line);
        });
    }
    std::vector<std::string> systemLines() const {
        std::vector<std::string> lines;
        for (const auto& record : systemLog->records()) {
            lines.push_back(record.category + " " +
                            (record.type == SystemLogType::info ? "info " : "error ") + record.message);
        }
        return lines;
    }

    std::shared_ptr<CapturedSystemLog> systemLog = std::make_shared<CapturedSystemLog>();
    MirethLog log{systemLog};
    std::vector<std::string> heard;
};

TEST_F(Logger, WithoutAllowedTagsInfoReachesNothingAndErrorReachesBoth) {
    listen("A");
    log.info(LogTag::lifecycle, "x");
    EXPECT_THAT(systemLines(), IsEmpty());
    EXPECT_THAT(heard, IsEmpty());
    log.error(LogTag::lifecycle, "x");
    EXPECT_THAT(systemLines(), ElementsAre("LIFECYCLE error x"));
    EXPECT_THAT(heard, ElementsAre("A LIFECYCLE error x"));
}

TEST_F(Logger, AnAllowedTagLetsItsOwnInfoLinesThrough) {
    listen("A");
    log.setAllowedTags({LogTag::network});
    for (const LogTag tag : allLogTags) {
        log.info(tag, "x");
    }
    EXPECT_THAT(systemLines(), ElementsAre("NETWORK info x"));
    EXPECT_THAT(heard, ElementsAre("A NETWORK info x"));
    EXPECT_EQ(log.allowedTags(), std::set<LogTag>{LogTag::network});
}

TEST_F(Logger, ErrorLinesAreNeverFiltered) {
    log.setAllowedTags({LogTag::network});
    for (const LogTag tag : allLogTags) {
        log.error(tag, "x");
    }
    EXPECT_THAT(systemLines(), SizeIs(allLogTags.size()));
}

TEST_F(Logger, AdditionalInfoFollowsTheMessageAfterOneSpace) {
    log.setAllowedTags({LogTag::signal});
    log.error(LogTag::lifecycle, "x", {{"errorDetails", "e"}});
    log.info(LogTag::signal, "y", {{"a", "1"}, {"b", "2"}});
    log.error(LogTag::lifecycle, "z");
    EXPECT_THAT(systemLines(), ElementsAre(R"(LIFECYCLE error x ["errorDetails": "e"])",
                                           R"(SIGNAL info y ["a": "1", "b": "2"])", "LIFECYCLE error z"));
}

TEST_F(Logger, WhatALineCarriesIsAskedForOnlyWhenItIsWritten) {
    int asked = 0;
    const auto carried = [&asked] {
        ++asked;
        return AdditionalInfo{{"k", "v"}};
    };
    log.info(LogTag::network, "x", carried);
    EXPECT_EQ(asked, 0);
    log.setAllowedTags({LogTag::network});
    log.info(LogTag::network, "x", carried);
    EXPECT_EQ(asked, 1);
    EXPECT_THAT(systemLines(), ElementsAre(R"(NETWORK info x ["k": "v"])"));
}

TEST_F(Logger, TheSystemLogComesBeforeTheListenersAndTheyBeforeTheRemoteLog) {
    std::vector<std::string> order;
    struct NotingPoster final : RemoteLogPoster {
        explicit NotingPoster(std::vector<std::string>& into) : order(into) {}
        void post(LogLevel, LogTag, const std::string&, const AdditionalInfo&, bool) override {
            order.emplace_back("remote");
        }
        std::vector<std::string>& order;
    };
    log.addLogListener([&](LogTag, LogLevel, const std::string&) {
        EXPECT_THAT(systemLines(), SizeIs(1));
        order.emplace_back("listener");
    });
    const auto poster = std::make_shared<NotingPoster>(order);
    log.setRemotePoster(poster);
    log.error(LogTag::network, "x");
    EXPECT_THAT(order, ElementsAre("listener", "remote"));
}

TEST_F(Logger, ListenersAreCalledInTheOrderInWhichTheyWereAdded) {
    listen("A");
    listen("B");
    log.error(LogTag::signal, "x", {{"k", "v"}});
    EXPECT_THAT(heard, ElementsAre(R"(A SIGNAL error x ["k": "v"])", R"(B SIGNAL error x ["k": "v"])"));
}

TEST_F(Logger, ListenersRunOnTheCallersThread) {
    std::thread::id heardOn;
    log.addLogListener([&](LogTag, LogLevel, const std::string&) { heardOn = std::this_thread::get_id(); });
    std::thread::id loggedOn;
    std::thread([&] {
        loggedOn = std::this_thread::get_id();
        log.error(LogTag::network, "x");
    }).join();
    EXPECT_EQ(heardOn, loggedOn);
}

TEST_F(Logger, ResetEmptiesTheAllowedTagsAndKeepsListenersAndSinks) {
    listen("A");
    log.setAllowedTags({LogTag::network, LogTag::lifecycle});
    log.reset();
    EXPECT_TRUE(log.allowedTags().empty());
    log.info(LogTag::network, "x");
    EXPECT_THAT(heard, IsEmpty());
    log.error(LogTag::network, "y");
    EXPECT_THAT(heard, ElementsAre("A NETWORK error y"));
    EXPECT_THAT(systemLines(), ElementsAre("NETWORK error y"));
}

TEST_F(Logger, AListenerThatThrowsHarmsNobody) {
    log.addLogListener([](LogTag, LogLevel, const std::string&) { throw std::runtime_error("mine"); });
    log.addLogListener([](LogTag, LogLevel, const std::string&) { throw 42; });
    listen("B");
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(log.error(LogTag::network, "x"));
    const std::string complaints = testing::internal::GetCapturedStderr();
    EXPECT_THAT(heard, ElementsAre("B NETWORK error x"));
    EXPECT_NE(complaints.find("mine"), std::string::npos);
    log.error(LogTag::network, "y");
    EXPECT_THAT(heard, SizeIs(2));
}

TEST_F(Logger, WhatAListenerLogsReachesTheSystemLogButNoListener) {
    int calls = 0;
    log.addLogListener([&](LogTag, LogLevel, const std::string&) {
        ++calls;
        log.error(LogTag::signal, "from the listener");
    });
    listen("B");
    log.error(LogTag::network, "x");
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(systemLines(), ElementsAre("NETWORK error x", "SIGNAL error from the listener"));
    EXPECT_THAT(heard, ElementsAre("B NETWORK error x"));
}

TEST_F(Logger, WhatAListenerLogsIsNotPosted) {
    const auto poster = std::make_shared<CapturingPoster>();
    log.setRemotePoster(poster);
    CapturingPoster given;
    log.addLogListener([&](LogTag, LogLevel, const std::string&) {
        log.error(LogTag::signal, "from the listener");
        log.logWithRemoteLogger(given, LogTag::signal, "from the listener");
    });
    log.error(LogTag::network, "x");
    log.error(LogTag::network, "y");
    EXPECT_THAT(poster->posted, ElementsAre(Posted{LogLevel::error, LogTag::network, "x", {}, false},
                                            Posted{LogLevel::error, LogTag::network, "y", {}, false}));
    EXPECT_THAT(given.posted, IsEmpty());
}

TEST_F(Logger, WhatAnotherThreadLogsMeanwhileIsPostedAndHeard) {
    const auto poster = std::make_shared<CapturingPoster>();
    log.setRemotePoster(poster);
    bool logged = false;
    log.addLogListener([&](LogTag, LogLevel, const std::string&) {
        if (!std::exchange(logged, true)) {
            std::thread([&] { log.error(LogTag::signal, "elsewhere"); }).join();
        }
    });
    listen("B");
    log.error(LogTag::network, "x");
    EXPECT_THAT(poster->posted, SizeIs(2));
    EXPECT_THAT(heard, ElementsAre("B SIGNAL error elsewhere", "B NETWORK error x"));
}

TEST_F(Logger, AListenerMayAddAListenerWhichHearsTheNextLine) {
    bool added = false;
    log.addLogListener([&](LogTag, LogLevel, const std::string&) {
        if (!std::exchange(added, true)) {
            listen("late");
        }
    });
    log.error(LogTag::network, "x");
    EXPECT_THAT(heard, IsEmpty());
    log.error(LogTag::network, "y");
    EXPECT_THAT(heard, ElementsAre("late NETWORK error y"));
}

TEST_F(Logger, ANullListenerIsIgnored) {
    log.addLogListener(nullptr);
    log.error(LogTag::network, "x");
    EXPECT_THAT(systemLines(), SizeIs(1));
}

TEST_F(Logger, AnErrorIsHandedToTheRemoteLogInItsParts) {
    const auto poster = std::make_shared<CapturingPoster>();
    log.setRemotePoster(poster);
    log.error(LogTag::network, "x", {{"k", "v"}});
    EXPECT_THAT(poster->posted,
                ElementsAre(Posted{LogLevel::error, LogTag::network, "x", {{"k", "v"}}, false}));
}

TEST_F(Logger, NeitherInfosNorErrorsThatDoNotAskForItArePosted) {
    const auto poster = std::make_shared<CapturingPoster>();
    log.setRemotePoster(poster);
    log.setAllowedTags({LogTag::network});
    log.info(LogTag::network, "i");
    log.error(LogTag::network, "e", {}, false);
    EXPECT_THAT(poster->posted, IsEmpty());
    EXPECT_THAT(systemLines(), SizeIs(2));
}

TEST_F(Logger, ARemoteLogThatIsGoneIsNotMissed) {
    log.setRemotePoster(std::make_shared<CapturingPoster>());
    log.error(LogTag::network, "x");
    EXPECT_THAT(systemLines(), SizeIs(1));
}

TEST_F(Logger, LogWithRemoteLoggerPostsThroughTheGivenOne) {
    const auto shared = std::make_shared<CapturingPoster>();
    log.setRemotePoster(shared);
    CapturingPoster given;
    log.logWithRemoteLogger(given, LogTag::network, "x");
    log.logWithRemoteLogger(given, LogTag::network, "y", false);
    EXPECT_THAT(given.posted, ElementsAre(Posted{LogLevel::error, LogTag::network, "x", {}, false}));
    EXPECT_THAT(shared->posted, IsEmpty());
    EXPECT_THAT(systemLines(), ElementsAre("NETWORK error x", "NETWORK error y"));
}

TEST_F(Logger, ObjectInitNamesTheLastPartOfThePathWithoutItsEnding) {
    log.setAllowedTags({LogTag::memoryUse});
    log.objectInit(MemoryUseStatus::initialized, "PublicSide/MirethSR");
    log.objectInit(MemoryUseStatus::deinitialized, "PrivateSide/Orchestrator/Orchestrator.swift.gyb");
    log.objectInit(MemoryUseStatus::initialized, "Plain");
    EXPECT_THAT(systemLines(), ElementsAre("MEMORY_USE info MirethSR: Succesfully initialized",
                                           "MEMORY_USE info Orchestrator: Succesfully deinitialized",
                                           "MEMORY_USE info Plain: Succesfully initialized"));
}

TEST_F(Logger, ObjectInitIsAnInfoLineAndSoFiltered) {
    log.objectInit(MemoryUseStatus::initialized, "PublicSide/MirethSR");
    EXPECT_THAT(systemLines(), IsEmpty());
}

TEST(LoggerSinks, EachTagHasASinkOfTheSubsystemMadeInOrder) {
    const auto systemLog = std::make_shared<CapturedSystemLog>();
    MirethLog log(systemLog);
    for (const LogTag tag : allLogTags) {
        log.error(tag, "x");
    }
    std::vector<std::string> categories;
    for (const auto& record : systemLog->records()) {
        EXPECT_EQ(record.subsystem, "M-VEX");
        EXPECT_TRUE(record.isStructured);
        categories.push_back(record.category);
    }
    EXPECT_THAT(categories, ElementsAre("MEMORY_USE", "LIFECYCLE", "GESTURE", "SIGNAL", "PLAYBACK", "NETWORK",
                                        "NAVIGATION"));
}

TEST(LoggerSinks, AreMadeOnceInTheOrderOfTheTags) {
    std::vector<std::string> made;
    const OSLoggers loggers([&](std::string_view subsystem, std::string_view category) {
        made.push_back(std::string(subsystem) + " " + std::string(category));
        return std::unique_ptr<LoggerType>();
    });
    EXPECT_THAT(made, ElementsAre("M-VEX MEMORY_USE", "M-VEX LIFECYCLE", "M-VEX GESTURE", "M-VEX SIGNAL",
                                  "M-VEX PLAYBACK", "M-VEX NETWORK", "M-VEX NAVIGATION"));
}

TEST(LoggerSinks, ATagWithoutASinkWritesNothing) {
    const OSLoggers loggers([](std::string_view, std::string_view) { return std::unique_ptr<LoggerType>(); });
    EXPECT_EQ(loggers.get(LogTag::network), nullptr);
    loggers.info(LogTag::network, "x");
    loggers.error(LogTag::network, "x");
}

TEST(LoggerSinks, WithoutAStructuredLogTheSameTextGoesToThePlainOne) {
    const auto systemLog = std::make_shared<CapturedSystemLog>(false);
    MirethLog log(systemLog);
    log.error(LogTag::network, "x", {{"k", "v"}});
    EXPECT_THAT(systemLog->records(), ElementsAre(SystemLogRecord{false, "M-VEX", "NETWORK",
                                                                  SystemLogType::error, R"(x ["k": "v"])"}));
}

TEST(LoggerThreads, MayLogAllowAndListenAtOnce) {
    MirethLog log(std::make_shared<CapturedSystemLog>());
    std::mutex mutex;
    int heard = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            log.addLogListener([&](LogTag, LogLevel, const std::string&) {
                const std::lock_guard lock(mutex);
                ++heard;
            });
            for (int i = 0; i < 100; ++i) {
                log.setAllowedTags({LogTag::network});
                log.info(LogTag::network, "i");
                log.error(LogTag::network, "e");
                log.reset();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_GE(heard, 400) << "each thread's errors reach at least its own listener";
}

}  // namespace
}  // namespace mireth
