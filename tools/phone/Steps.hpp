// What a script does, one struct for each kind of action.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "phone/ViewSettings.hpp"

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
/// One finger that taps, again and again.
struct TapStep {
    Point at;
    std::size_t times = 1;
    /// From one touch's beginning to the next one's.
    std::chrono::nanoseconds interval = std::chrono::milliseconds(150);
};
struct SwipeStep {
    Point from;
    Point to;
    std::chrono::nanoseconds duration = std::chrono::milliseconds(300);
};
struct CancelledTouchStep {
    Point at;
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

using Action = std::variant<InitializeStep, CallStep, TapStep, SwipeStep, CancelledTouchStep, PresentStep,
                            SetStep, LogErrorStep, ReportScreenStep, ReportScreenChangeStep, SignalStep,
                            ResizeStep, MoveToBackgroundStep, NetworkStep, SystemClockStep, WaitStep>;

/// Something to do, wherever in the file it stands.
struct Instruction {
    /// Its place in the file.
    std::string path;
    Action action;
    /// The name of the case that the call has to answer.
    std::optional<std::string> expect;
};

/// What the script does by itself.
struct Step : Instruction {
    std::chrono::nanoseconds at{};
};

/// What the app does when a view of it is tapped. Only some actions are open to an app.
struct Reaction : Instruction {
    /// From the end of the touch.
    std::chrono::nanoseconds after{};
};

/// The call's name, such as "startRecording".
std::string_view toString(LibraryCall call) noexcept;

}  // namespace mireth::phone
