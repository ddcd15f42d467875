#include "model/LibraryRun.hpp"

#include <utility>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "model/CoreLibrary.hpp"
#include "model/QuickParts.hpp"
#include "phone/Reporter.hpp"
#include "phone/ScreenSet.hpp"
#include "phone/ScriptRunner.hpp"
#include "support/IngestionFake.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth::model {

namespace {

std::int64_t toMillis(phone::Instant at) {
    return at / std::chrono::milliseconds(1);
}

/// Which error lines are posted to the remote log is drawn by lot, and so is which posts fail.
bool isAboutAPost(const std::string& line) {
    return line.starts_with("Unexpected error while posting log");
}

/// Writes answers and error lines into an outcome.
class OutcomeReporter final : public phone::Reporter {
  public:
    explicit OutcomeReporter(Outcome& outcome) : outcome_(outcome) {}
    void answer(phone::Instant at, const phone::CallAnswer& answer) override {
        outcome_.lines.push_back(answerLine(toMillis(at), answer.call, answer.result));
    }
    void log(phone::Instant at, LogTag, LogLevel level, const std::string& line) override {
        if (level == LogLevel::error && !isAboutAPost(line)) {
            outcome_.lines.push_back(errorLine(toMillis(at), line));
        }
    }
    void end(phone::Instant, bool, const std::string&) override {}

  private:
    Outcome& outcome_;
};

/// Writes nothing to the system's log.
class Silent final : public LoggerType {
  public:
    void info(std::string_view) override {}
    void error(std::string_view) override {}
};

headless::HeadlessOptions describePhone(const phone::Scenario& scenario,
                                        const std::shared_ptr<platform::FileManager>& files) {
    headless::HeadlessOptions options;
    options.epochMillis = scenario.epochMillis;
    options.uptimeSeconds = scenario.uptimeSeconds;
    options.device = scenario.device;
    options.information = scenario.bundle;
    options.userDefaults = scenario.userDefaults;
    options.network = scenario.network;
    options.files = files;
    options.graphics = makeBlankGraphics();
    options.assetWriters = makeEmptyVideos(*files);
    return options;
}

}  // namespace

Outcome playInProcess(const phone::Scenario& scenario) {
    Outcome outcome;
    OutcomeReporter reporter(outcome);
    MirethLog log([](std::string_view, std::string_view) { return std::make_unique<Silent>(); });
    const auto files = std::make_shared<tests::MemoryFileManager>();
    phone::ScreenSet screens(scenario);
    test::IngestionFake service;
    headless::HeadlessPlatform platform(describePhone(scenario, files));
    platform.service()->setService(std::ref(service));
    log.addLogListener([&](LogTag tag, LogLevel level, const std::string& line) {
        reporter.log(platform.queue().now(), tag, level, line);
    });
    {
        MirethSRCore core(log, platform.services());
        CoreLibrary library(core);
        phone::ScriptRunner(scenario, platform, screens, library, reporter).run();
    }
    for (const auto& chunk : service.chunks) {
        for (const auto& event : chunk.timeline) {
            outcome.events.push_back(eventLine(chunk.info.at("sessionId").get<std::string>(), event));
        }
    }
    return outcome;
}

}  // namespace mireth::model
