// The library's public interface, as far as the phone calls it. MirethLibrary answers it with MirethSR; tests
// answer it with a library of their own.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "MirethVex/Platform/Window.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/InitializationResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionPauseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionResumeResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionStartResult.hpp"
#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"
#include "phone/Steps.hpp"

namespace mireth::phone {

/// Main thread only, but for log listeners, which run on whichever thread logs.
class RecordedLibrary {
  public:
    virtual ~RecordedLibrary() = default;

    virtual void addLogListener(std::function<void(LogTag, LogLevel, const std::string&)> listener) = 0;
    virtual void setAllowedLoggingTags(const std::set<LogTag>& tags) = 0;
    virtual InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                                   std::shared_ptr<platform::Window> window) = 0;
    /// The receivers of these two run later, on the main thread.
    virtual void startRecording(VexConfiguration configuration,
                                std::function<void(const SessionStartResult&)> receiver) = 0;
    virtual void stopRecording(std::function<void(const SessionCloseResult&)> receiver) = 0;
    virtual SessionPauseResult pauseRecording() = 0;
    virtual SessionResumeResult resumeRecording() = 0;
    virtual void reset() = 0;

    virtual void logError(std::optional<std::string> message) = 0;
    virtual void reportScreenAppeared(const std::string& name) = 0;
    virtual void reportScreenDisappeared(const std::string& name) = 0;
    virtual void reportScreenChange(const std::vector<ScreenHierarchyElement>& hierarchy,
                                    ScreenChangeType changeType, ScreenDetectionType detectionType) = 0;
    /// The diagnostic hook: a signal without a gesture.
    virtual void recordSignal(SignalType type, Point target) = 0;

    virtual bool hasActiveSession() const = 0;
    /// The name of the session's state, such as "stopped".
    virtual std::string stateName() const = 0;
};

}  // namespace mireth::phone
