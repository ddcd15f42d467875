// The public calls: each forwards to the core and lets nothing escape.
#include "MirethVex/PublicSide/MirethSR.hpp"

#include <utility>

#include "PublicSide/Guarded.hpp"
#include "PublicSide/MirethSRAccess.hpp"
#include "PublicSide/MirethSRCore.hpp"

namespace mireth {

MirethSR::MirethSR(std::unique_ptr<MirethSRCore> core) noexcept : core_(std::move(core)) {}
MirethSR::~MirethSR() = default;

MirethSR MirethSRAccess::make(std::unique_ptr<MirethSRCore> core) noexcept {
    return MirethSR(std::move(core));
}

InitializationResult MirethSR::initializeProject(const std::string& brandId, const std::string& projectId,
                                                 std::shared_ptr<platform::Window> window) noexcept {
    return guarded(*core_, InitializationResult::cannotGetKeyWindow,
                   [&] { return core_->initializeProject(brandId, projectId, std::move(window)); });
}

Async<SessionStartResult> MirethSR::startRecording(VexConfiguration vexConfiguration) noexcept {
    return guardedOr(
        *core_, [&] { return core_->resolved(SessionStartResult::fail(std::nullopt)); },
        [&] { return core_->startRecording(std::move(vexConfiguration)); });
}

SessionPauseResult MirethSR::pauseRecording() noexcept {
    return guarded(*core_, SessionPauseResult::notStarted, [&] { return core_->pauseRecording(); });
}

SessionResumeResult MirethSR::resumeRecording() noexcept {
    return guarded(*core_, SessionResumeResult::notStarted, [&] { return core_->resumeRecording(); });
}

Async<SessionCloseResult> MirethSR::stopRecording() noexcept {
    return guardedOr(
        *core_, [&] { return core_->resolved(SessionCloseResult::fail(std::nullopt)); },
        [&] { return core_->stopRecording(); });
}

void MirethSR::addLogListener(std::function<void(LogTag, LogLevel, const std::string&)> listener) noexcept {
    guarded(*core_, [&] { core_->addLogListener(std::move(listener)); });
}

void MirethSR::logError(std::optional<std::string> message) noexcept {
    guarded(*core_, [&] { core_->logError(std::move(message)); });
}

void MirethSR::reportScreenAppeared(const std::string& name) noexcept {
    guarded(*core_, [&] {
        core_->reportScreenChange({ScreenHierarchyElement{name}}, ScreenChangeType::appear,
                                  ScreenDetectionType::manual,
                                  "Can't record screen appearance. Not initialized.");
    });
}

void MirethSR::reportScreenDisappeared(const std::string& name) noexcept {
    guarded(*core_, [&] {
        core_->reportScreenChange({ScreenHierarchyElement{name}}, ScreenChangeType::disappear,
                                  ScreenDetectionType::manual,
                                  "Can't record screen disappearance. Not initialized.");
    });
}

void MirethSR::reportScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                                  ScreenChangeType changeType, ScreenDetectionType detectionType) noexcept {
    guarded(*core_, [&] { core_->reportScreenChange(screenHierarchy, changeType, detectionType); });
}

void MirethSR::reset() noexcept {
    guarded(*core_, [&] { core_->reset(); });
}

bool MirethSR::hasActiveSession() const noexcept {
    return guarded(*core_, false, [&] { return core_->hasActiveSession(); });
}

std::set<LogTag> MirethSR::allowedLoggingTags() const noexcept {
    return guarded(*core_, std::set<LogTag>{}, [&] { return core_->allowedLoggingTags(); });
}

void MirethSR::setAllowedLoggingTags(const std::set<LogTag>& tags) noexcept {
    guarded(*core_, [&] { core_->setAllowedLoggingTags(tags); });
}

}  // namespace mireth
