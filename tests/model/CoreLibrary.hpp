// The whole library behind the phone's calls: one of its own for every scenario, where a process has only one
// MirethSR.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "PublicSide/MirethSRCore.hpp"
#include "phone/RecordedLibrary.hpp"

namespace mireth::model {

/// Knows all calls but the diagnostic hook. `core` outlives it.
class CoreLibrary final : public phone::RecordedLibrary {
  public:
    explicit CoreLibrary(MirethSRCore& core) : core_(core) {}

    void addLogListener(std::function<void(LogTag, LogLevel, const std::string&)> listener) override {
        core_.addLogListener(std::move(listener));
    }
    void setAllowedLoggingTags(const std::set<LogTag>& tags) override { core_.setAllowedLoggingTags(tags); }
    InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                           std::shared_ptr<platform::Window> window) override {
        return core_.initializeProject(brandId, projectId, std::move(window));
    }
    void startRecording(VexConfiguration configuration,
                        std::function<void(const SessionStartResult&)> receiver) override {
        core_.startRecording(std::move(configuration)).then(std::move(receiver));
    }
    void stopRecording(std::function<void(const SessionCloseResult&)> receiver) override {
        core_.stopRecording().then(std::move(receiver));
    }
    SessionPauseResult pauseRecording() override { return core_.pauseRecording(); }
    SessionResumeResult resumeRecording() override { return core_.resumeRecording(); }
    void reset() override { core_.reset(); }
    void logError(std::optional<std::string> message) override { core_.logError(std::move(message)); }
    void reportScreenAppeared(const std::string& name) override {
        report({ScreenHierarchyElement{name}}, ScreenChangeType::appear, ScreenDetectionType::manual);
    }
    void reportScreenDisappeared(const std::string& name) override {
        report({ScreenHierarchyElement{name}}, ScreenChangeType::disappear, ScreenDetectionType::manual);
    }
    void reportScreenChange(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                            ScreenDetectionType detection) override {
        report(hierarchy, change, detection);
    }
    void recordSignal(phone::SignalType, Point) override {
        throw std::logic_error("no scenario of the model check records a signal without a gesture");
    }
    bool hasActiveSession() const override { return core_.hasActiveSession(); }
    std::string stateName() const override {
        const auto orchestrator = core_.orchestrator();
        return orchestrator ? orchestrator->state().name() : "stopped";
    }

  private:
    void report(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                ScreenDetectionType detection) {
        core_.reportScreenChange(hierarchy, change, detection);
    }

    MirethSRCore& core_;
};

}  // namespace mireth::model
