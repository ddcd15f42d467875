// The phone's calls, passed on to MirethSR.
#include "phone/MirethLibrary.hpp"

#include <stdexcept>
#include <utility>

#include "MirethVex/PublicSide/MirethSR.hpp"
#include "PublicSide/MirethSRDiagnostics.hpp"

namespace mireth::phone {

namespace {

SessionSignalType toSessionSignalType(SignalType type) {
    switch (type) {
        case SignalType::deadTap:
            return SessionSignalType::deadTap;
        case SignalType::rageTap:
            return SessionSignalType::rageTap;
        case SignalType::errorTap:
            break;
    }
    return SessionSignalType::errorTap;
}

class MirethLibrary final : public RecordedLibrary {
  public:
    explicit MirethLibrary(MirethSR& library) : library_(library) {}
    MirethLibrary(const MirethLibrary&) = delete;
    MirethLibrary& operator=(const MirethLibrary&) = delete;
    ~MirethLibrary() override { library_.reset(); }

    void addLogListener(std::function<void(LogTag, LogLevel, const std::string&)> listener) override {
        library_.addLogListener(std::move(listener));
    }
    void setAllowedLoggingTags(const std::set<LogTag>& tags) override {
        library_.setAllowedLoggingTags(tags);
    }
    InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                           std::shared_ptr<platform::Window> window) override {
        return library_.initializeProject(brandId, projectId, std::move(window));
    }
    void startRecording(VexConfiguration configuration,
                        std::function<void(const SessionStartResult&)> receiver) override {
        library_.startRecording(std::move(configuration)).then(std::move(receiver));
    }
    void stopRecording(std::function<void(const SessionCloseResult&)> receiver) override {
        library_.stopRecording().then(std::move(receiver));
    }
    SessionPauseResult pauseRecording() override { return library_.pauseRecording(); }
    SessionResumeResult resumeRecording() override { return library_.resumeRecording(); }
    void reset() override { library_.reset(); }

    void logError(std::optional<std::string> message) override { library_.logError(std::move(message)); }
    void reportScreenAppeared(const std::string& name) override { library_.reportScreenAppeared(name); }
    void reportScreenDisappeared(const std::string& name) override { library_.reportScreenDisappeared(name); }
    void reportScreenChange(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType changeType,
                            ScreenDetectionType detectionType) override {
        library_.reportScreenChange(hierarchy, changeType, detectionType);
    }
    void recordSignal(SignalType type, Point target) override {
        diagnostics::recordSignal(library_, toSessionSignalType(type),
                                  {static_cast<float>(target.x), static_cast<float>(target.y)});
    }

    bool hasActiveSession() const override { return library_.hasActiveSession(); }
    std::string stateName() const override { return diagnostics::sessionStateName(library_); }

  private:
    MirethSR& library_;
};

}  // namespace

std::unique_ptr<RecordedLibrary> makeMirethLibrary(platform::PlatformServices services) {
    if (!MirethSR::installPlatformServices(std::move(services))) {
        throw std::logic_error("the library of this process stands on other services already");
    }
    return std::make_unique<MirethLibrary>(MirethSR::shared());
}

}  // namespace mireth::phone
