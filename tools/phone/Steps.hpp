// What a script does, one struct for each kind of step.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

enum class LibraryCall { startRecording, stopRecording, pauseRecording, resumeRecording, reset };
enum class SignalType { deadTap, rageTap, errorTap };

struct InitializeStep {
    std::string brandId;
    std::string projectId;
    /// False: no window is passed, and the application has no key window at that moment.
    bool window = true;
};
struct CallStep {
    LibraryCall call = LibraryCall::reset;
};
struct PresentStep {
    std::string screen;
};
struct SetStep {
    std::string id;
    ViewSettings settings;
};
struct LogErrorStep {
    std::optional<std::string> message;
};
struct ReportScreenStep {
    std::string name;
    bool appeared = true;
};
struct ReportScreenChangeStep {
    std::vector<ScreenHierarchyElement> hierarchy;
    ScreenChangeType changeType = ScreenChangeType::appear;
    ScreenDetectionType detectionType = ScreenDetectionType::manual;
};
struct SignalStep {
    SignalType type = SignalType::rageTap;
    Point target;
};
struct ResizeStep {
    Size size;
};
struct MoveToBackgroundStep {};
struct NetworkStep {
    platform::NetworkPath path;
};
struct SystemClockStep {
    std::chrono::nanoseconds jump{};
};
struct WaitStep {};

using StepAction = std::variant<InitializeStep, CallStep, PresentStep, SetStep, LogErrorStep,
                                ReportScreenStep, ReportScreenChangeStep, SignalStep, ResizeStep,
                                MoveToBackgroundStep, NetworkStep, SystemClockStep, WaitStep>;

struct Step {
    /// Its place in the file.
    std::string path;
    std::chrono::nanoseconds at{};
    StepAction action;
    /// The name of the case that the call has to answer.
    std::optional<std::string> expect;
};

/// The call's name, such as "startRecording".
std::string_view toString(LibraryCall call) noexcept;

}  // namespace mireth::phone
