// A table of the actions and a reader for each.
#include "phone/StepReader.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <span>

namespace mireth::phone {

namespace {

constexpr double longestSeconds = 86'400;
constexpr double farthest = 100'000;
constexpr std::size_t mostSteps = 100'000;

constexpr std::array<std::string_view, 5> callNames{"startRecording", "stopRecording", "pauseRecording",
                                                    "resumeRecording", "reset"};

/// What a step's context offers to the readers of its actions.
struct Context {
    const ViewReader& views;
    const std::set<std::string>& screenNames;
};

std::chrono::nanoseconds toNanoseconds(double seconds) {
    return std::chrono::nanoseconds(std::llround(seconds * 1e9));
}

void requireTrue(const JsonNode& node) {
    if (!node.boolean()) {
        node.fail("must be true");
    }
}

Point readPoint(const JsonNode& node) {
    const auto values = node.numbers(2, -farthest, farthest);
    return {values[0], values[1]};
}

StepAction readInitialize(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 3> keys{"brandId", "projectId", "window"};
    node.requireKeys(keys);
    // Empty identifiers are allowed: the library refuses them, and that is worth a script.
    InitializeStep step{node.at("brandId").text(), node.at("projectId").text(), true};
    if (const auto window = node.find("window")) {
        step.window = window->boolean();
    }
    return step;
}

StepAction readCall(const JsonNode& node, const Context&) {
    return CallStep{static_cast<LibraryCall>(node.choice(callNames))};
}

StepAction readTouch(const JsonNode& node, const Context&) {
    node.fail("touches are not supported yet");
}

StepAction readPresent(const JsonNode& node, const Context& context) {
    const std::string name = node.name();
    if (!context.screenNames.contains(name)) {
        node.fail("names no screen of this scenario");
    }
    return PresentStep{name};
}

StepAction readSet(const JsonNode& node, const Context& context) {
    const std::string id = node.name();
    if (!context.views.ids().contains(id)) {
        node.fail("names no view of this scenario");
    }
    return SetStep{id, {}};
}

StepAction readLogError(const JsonNode& node, const Context&) {
    return LogErrorStep{node.isNull() ? std::nullopt : std::optional(node.text())};
}

StepAction readScreenAppeared(const JsonNode& node, const Context&) {
    return ReportScreenStep{node.text(), true};
}

StepAction readScreenDisappeared(const JsonNode& node, const Context&) {
    return ReportScreenStep{node.text(), false};
}

StepAction readScreenChange(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 3> keys{"screenHierarchy", "changeType", "detectionType"};
    static constexpr std::array<std::string_view, 2> elementKeys{"screenName", "screenType"};
    static constexpr std::array<std::string_view, 2> changes{"appear", "disappear"};
    static constexpr std::array<std::string_view, 2> detections{"manual", "auto"};
    node.requireKeys(keys);
    ReportScreenChangeStep step;
    for (const auto& element : node.at("screenHierarchy").elements(0, 100)) {
        element.requireKeys(elementKeys);
        ScreenHierarchyElement screen;
        screen.screenName = element.at("screenName").text();
        if (const auto type = element.find("screenType")) {
            screen.screenType = type->text();
        }
        step.hierarchy.push_back(std::move(screen));
    }
    step.changeType = static_cast<ScreenChangeType>(node.at("changeType").choice(changes));
    if (const auto detection = node.find("detectionType")) {
        step.detectionType = static_cast<ScreenDetectionType>(detection->choice(detections));
    }
    return step;
}

StepAction readSignal(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 2> keys{"type", "target"};
    static constexpr std::array<std::string_view, 3> types{"deadTap", "rageTap", "errorTap"};
    node.requireKeys(keys);
    return SignalStep{static_cast<SignalType>(node.at("type").choice(types)), readPoint(node.at("target"))};
}

StepAction readResize(const JsonNode& node, const Context&) {
    const auto parts = node.elements(2, 2);
    return ResizeStep{readWindowSize(parts[0], parts[1])};
}

StepAction readBackground(const JsonNode& node, const Context&) {
    requireTrue(node);
    return MoveToBackgroundStep{};
}

StepAction readNetworkStep(const JsonNode& node, const Context&) {
    return NetworkStep{readNetwork(node)};
}

StepAction readSystemClock(const JsonNode& node, const Context&) {
    constexpr double farthestJump = 1e9;
    return SystemClockStep{toNanoseconds(node.number(-farthestJump, farthestJump))};
}

StepAction readWait(const JsonNode& node, const Context&) {
    requireTrue(node);
    return WaitStep{};
}

using ActionReader = StepAction (*)(const JsonNode&, const Context&);

constexpr std::array<std::pair<std::string_view, ActionReader>, 17> actions{{
    {"initialize", readInitialize},
    {"call", readCall},
    {"tap", readTouch},
    {"swipe", readTouch},
    {"cancelledTouch", readTouch},
    {"present", readPresent},
    {"set", readSet},
    {"logError", readLogError},
    {"reportScreenAppeared", readScreenAppeared},
    {"reportScreenDisappeared", readScreenDisappeared},
    {"reportScreenChange", readScreenChange},
    {"signal", readSignal},
    {"resize", readResize},
    {"moveToBackground", readBackground},
    {"network", readNetworkStep},
    {"systemClock", readSystemClock},
    {"wait", readWait},
}};

/// The step's one action key. Touch steps come first, so that their own keys are not complained about.
std::pair<std::string_view, ActionReader> findAction(const JsonNode& node) {
    std::optional<std::pair<std::string_view, ActionReader>> found;
    for (const auto& action : actions) {
        if (!node.find(action.first)) {
            continue;
        }
        if (found) {
            node.fail("has two actions, \"" + std::string(found->first) + "\" and \"" +
                      std::string(action.first) + "\"");
        }
        found = action;
    }
    if (!found) {
        node.fail("does nothing; it needs an action such as \"call\" or \"wait\"");
    }
    return *found;
}

/// The names of the cases that the action's call can answer; empty when it answers nothing.
std::vector<std::string_view> possibleAnswers(const StepAction& action) {
    if (std::holds_alternative<InitializeStep>(action)) {
        return {"success", "paramsRequired", "cannotGetKeyWindow", "sessionAlreadyRunning"};
    }
    const auto* call = std::get_if<CallStep>(&action);
    if (call == nullptr) {
        return {};
    }
    switch (call->call) {
        case LibraryCall::startRecording:
            return {"success",          "fail",
                    "alreadyStarted",   "notInitialized",
                    "samplingRejected", "sessionReplayNotEnabled",
                    "unsupportedDevice"};
        case LibraryCall::stopRecording:
            return {"success", "fail", "notStarted", "notInitialized"};
        case LibraryCall::pauseRecording:
            return {"success", "notInitialized", "notStarted", "alreadyPaused"};
        case LibraryCall::resumeRecording:
            return {"success", "notInitialized", "notStarted", "notPaused"};
        case LibraryCall::reset:
            break;
    }
    return {};
}

std::string readExpect(const JsonNode& node, const StepAction& action) {
    const auto answers = possibleAnswers(action);
    if (answers.empty()) {
        node.fail("belongs to a step whose call answers nothing");
    }
    return std::string(answers[node.choice(answers)]);
}

Step readStep(const JsonNode& node, const Context& context) {
    const auto [key, read] = findAction(node);
    const JsonNode value = node.at(key);
    Step step;
    step.path = node.path();
    step.at = toNanoseconds(node.at("at").number(0, longestSeconds));
    step.action = read(value, context);
    const std::array<std::string_view, 3> keys{"at", "expect", key};
    if (auto* set = std::get_if<SetStep>(&step.action)) {
        node.requireKeys(keys, settingKeys);
        set->settings = context.views.readSettings(node);
    } else {
        node.requireKeys(keys);
    }
    if (const auto expect = node.find("expect")) {
        step.expect = readExpect(*expect, step.action);
    }
    return step;
}

}  // namespace

std::string_view toString(LibraryCall call) noexcept {
    return callNames.at(static_cast<std::size_t>(call));
}

platform::NetworkPath readNetwork(const JsonNode& node) {
    static constexpr std::array<std::string_view, 5> names{"wifi", "cellular", "wired", "wifi+cellular",
                                                           "none"};
    const std::string_view name = names.at(node.choice(names));
    platform::NetworkPath path;
    path.satisfied = name != "none";
    path.usesWifi = name.starts_with("wifi");
    path.usesCellular = name.ends_with("cellular");
    path.usesWired = name == "wired";
    return path;
}

Size readWindowSize(const JsonNode& width, const JsonNode& height) {
    constexpr double largest = 4096;
    return {width.number(1, largest), height.number(1, largest)};
}

std::vector<Step> readSteps(const JsonNode& list, const ViewReader& views,
                            const std::set<std::string>& screenNames) {
    const Context context{views, screenNames};
    std::vector<Step> steps;
    for (const auto& node : list.elements(0, mostSteps)) {
        steps.push_back(readStep(node, context));
    }
    return steps;
}

}  // namespace mireth::phone
