// Runs scripts against a library and a printer of the test's own, which write down what reaches them.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "phone/ScriptRunner.hpp"

namespace mireth::phone {

using Log = std::vector<std::string>;

/// Writes down what is called and answers when it is told to.
class ScriptedLibrary final : public RecordedLibrary {
  public:
    ScriptedLibrary(Log& log, platform::MainQueue& queue) : log_(log), queue_(queue) {}

    void addLogListener(std::function<void(LogTag, LogLevel, const std::string&)>) override {}
    void setAllowedLoggingTags(const std::set<LogTag>&) override {}
    InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                           std::shared_ptr<platform::Window> window) override {
        log_.push_back("initialize " + brandId + "/" + projectId + (window ? "" : " without window"));
        return InitializationResult::success;
    }
    void startRecording(VexConfiguration, std::function<void(const SessionStartResult&)> receiver) override {
        log_.emplace_back("start");
        if (answers) {
            queue_.postAfter(startDelay,
                             [receiver] { receiver(SessionStartResult::success("m", {"S", 1})); });
        }
    }
    void stopRecording(std::function<void(const SessionCloseResult&)> receiver) override {
        log_.emplace_back("stop");
        queue_.post([receiver] { receiver(SessionCloseResult::of(SessionCloseResult::Kind::success)); });
    }
    SessionPauseResult pauseRecording() override {
        log_.emplace_back("pause");
        return SessionPauseResult::notStarted;
    }
    SessionResumeResult resumeRecording() override { return SessionResumeResult::notPaused; }
    void reset() override { log_.emplace_back("reset"); }
    void logError(std::optional<std::string> message) override {
        log_.push_back("error " + message.value_or("nil"));
    }
    void reportScreenAppeared(const std::string& name) override { log_.push_back("appeared " + name); }
    void reportScreenDisappeared(const std::string& name) override { log_.push_back("disappeared " + name); }
    void reportScreenChange(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType,
                            ScreenDetectionType) override {
        log_.push_back("change of " + std::to_string(hierarchy.size()));
    }
    void recordSignal(SignalType, Point) override { log_.emplace_back("signal"); }
    bool hasActiveSession() const override { return true; }
    std::string stateName() const override { return "started"; }

    platform::Seconds startDelay{0};
    bool answers = true;

  private:
    Log& log_;
    platform::MainQueue& queue_;
};

/// Writes down what would be printed.
class LoggingReporter final : public Reporter {
  public:
    explicit LoggingReporter(Log& log) : log_(log) {}
    void answer(Instant at, const CallAnswer& answer) override {
        log_.push_back(seconds(at) + answer.call + " = " + answer.result);
    }
    void log(Instant, LogTag, LogLevel, const std::string&) override {}
    void end(Instant at, bool hasActiveSession, const std::string& state) override {
        log_.push_back(seconds(at) + "end " + state + (hasActiveSession ? " active" : ""));
    }

  private:
    static std::string seconds(Instant at) {
        return std::to_string(at / std::chrono::milliseconds(1)) + " ms ";
    }
    Log& log_;
};

/// Virtual time, and one log of all that happened.
class ScriptHost : public ::testing::Test {
  protected:
    /// Plays the scenario.
    ScriptOutcome runFile(const std::string& text) {
        const Scenario scenario = parseScenario(text, "");
        ScreenSet screens(scenario);
        prepare(screens);
        LoggingReporter reporter(log);
        ScriptRunner runner(scenario, phone, screens, library, reporter);
        return runner.run();
    }

    virtual void prepare(ScreenSet& /*screens*/) {}

    Log log;
    headless::HeadlessPlatform phone{headless::HeadlessOptions{}};
    ScriptedLibrary library{log, phone.queue()};
};

}  // namespace mireth::phone
