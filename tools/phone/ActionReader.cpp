// A table of the actions and a reader for each.
#include "phone/ActionReader.hpp"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace mireth::phone {

namespace {

constexpr double longestSeconds = 86'400;
/// Between taps, or of a swipe.
constexpr double shortestGesture = 0.01;
constexpr double farthest = 100'000;
constexpr std::int64_t mostTaps = 1000;

constexpr std::array<std::string_view, 5> callNames{"startRecording", "stopRecording", "pauseRecording",
                                                    "resumeRecording", "reset"};

/// What surrounds the value of an action.
struct Context {
    /// The step or reaction that has the action as a member.
    const JsonNode& owner;
    const SettingsReader& settings;
};

std::chrono::nanoseconds toNanoseconds(double seconds) {
    return std::chrono::nanoseconds(std::llround(seconds * 1e9));
}

void requireTrue(const JsonNode& node) {
    if (!node.boolean()) {
        node.failOtherwise("true");
    }
}

Point readPoint(const JsonNode& node) {
    const auto values = node.numbers(2, -farthest, farthest);
    return {values[0], values[1]};
}

Action readInitialize(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 3> keys{"brandId", "projectId", "window"};
    node.requireKeys(keys);
    // Empty identifiers are allowed: the library refuses them, and that is worth a script.
    InitializeStep step{node.at("brandId").text(), node.at("projectId").text(), true};
    if (const auto window = node.find("window")) {
        step.window = window->boolean();
    }
    return step;
}

Action readCall(const JsonNode& node, const Context&) {
    return CallStep{static_cast<LibraryCall>(node.choice(callNames))};
}

Action readTap(const JsonNode& node, const Context& context) {
    TapStep step{.at = readPoint(node)};
    if (const auto times = context.owner.find("times")) {
        step.times = static_cast<std::size_t>(times->integer(1, mostTaps));
    }
    if (const auto interval = context.owner.find("interval")) {
        step.interval = readSpan(*interval, shortestGesture);
    }
    return step;
}

Action readSwipe(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 3> keys{"from", "to", "seconds"};
    node.requireKeys(keys);
    SwipeStep step{.from = readPoint(node.at("from")), .to = readPoint(node.at("to"))};
    if (const auto seconds = node.find("seconds")) {
        step.duration = readSpan(*seconds, shortestGesture);
    }
    return step;
}

Action readCancelledTouch(const JsonNode& node, const Context&) {
    return CancelledTouchStep{readPoint(node)};
}

Action readPresent(const JsonNode& node, const Context&) {
    return PresentStep{node.name()};
}

Action readSet(const JsonNode& node, const Context& context) {
    return SetStep{node.name(), context.settings.read(context.owner)};
}

Action readLogError(const JsonNode& node, const Context&) {
    return LogErrorStep{node.isNull() ? std::nullopt : std::optional(node.text())};
}

Action readScreenAppeared(const JsonNode& node, const Context&) {
    return ReportScreenStep{node.text(), true};
}

Action readScreenDisappeared(const JsonNode& node, const Context&) {
    return ReportScreenStep{node.text(), false};
}

Action readScreenChange(const JsonNode& node, const Context&) {
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

Action readSignal(const JsonNode& node, const Context&) {
    static constexpr std::array<std::string_view, 2> keys{"type", "target"};
    static constexpr std::array<std::string_view, 3> types{"deadTap", "rageTap", "errorTap"};
    node.requireKeys(keys);
    return SignalStep{static_cast<SignalType>(node.at("type").choice(types)), readPoint(node.at("target"))};
}

Action readResize(const JsonNode& node, const Context&) {
    const auto parts = node.elements(2, 2);
    return ResizeStep{{readWindowSide(parts[0]), readWindowSide(parts[1])}};
}

Action readBackground(const JsonNode& node, const Context&) {
    requireTrue(node);
    return MoveToBackgroundStep{};
}

Action readNetworkStep(const JsonNode& node, const Context&) {
    return NetworkStep{readNetwork(node)};
}

Action readSystemClock(const JsonNode& node, const Context&) {
    constexpr double farthestJump = 1e9;
    return SystemClockStep{toNanoseconds(node.number(-farthestJump, farthestJump))};
}

Action readWait(const JsonNode& node, const Context&) {
    requireTrue(node);
    return WaitStep{};
}

constexpr std::array<std::string_view, 0> noKeys{};
constexpr std::array<std::string_view, 2> tapKeys{"times", "interval"};

struct ActionKind {
    std::string_view key;
    Action (*read)(const JsonNode&, const Context&);
    /// An app can do it, too.
    bool isForApps = false;
    /// Of the step or reaction, beside the action's own.
    std::span<const std::string_view> moreKeys = noKeys;
};

constexpr std::array<ActionKind, 17> kinds{{
    {"initialize", readInitialize},
    {"call", readCall, true},
    {"tap", readTap, false, tapKeys},
    {"swipe", readSwipe},
    {"cancelledTouch", readCancelledTouch},
    {"present", readPresent, true},
    {"set", readSet, true, settingKeys},
    {"logError", readLogError, true},
    {"reportScreenAppeared", readScreenAppeared, true},
    {"reportScreenDisappeared", readScreenDisappeared, true},
    {"reportScreenChange", readScreenChange},
    {"signal", readSignal},
    {"resize", readResize},
    {"moveToBackground", readBackground},
    {"network", readNetworkStep},
    {"systemClock", readSystemClock},
    {"wait", readWait},
}};

/// The kind of the one action that `node` has.
const ActionKind& findKind(const JsonNode& node, Actor actor) {
    const ActionKind* found = nullptr;
    for (const auto& kind : kinds) {
        if (!node.find(kind.key)) {
            continue;
        }
        if (found != nullptr) {
            node.fail("has two actions, \"" + std::string(found->key) + "\" and \"" + std::string(kind.key) +
                      "\"");
        }
        found = &kind;
    }
    if (found == nullptr) {
        node.fail(std::string("does nothing; it needs an action such as ") +
                  (actor == Actor::script ? R"("call" or "wait")" : R"("set" or "present")"));
    }
    if (actor == Actor::app && !found->isForApps) {
        node.fail("has the action \"" + std::string(found->key) + "\", which an app cannot take");
    }
    return *found;
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

double readWindowSide(const JsonNode& node) {
    constexpr double largest = 4096;
    return node.number(1, largest);
}

std::chrono::nanoseconds readSpan(const JsonNode& node, double shortest) {
    return toNanoseconds(node.number(shortest, longestSeconds));
}

Instruction readInstruction(const JsonNode& node, Actor actor, std::span<const std::string_view> otherKeys,
                            const SettingsReader& settings) {
    const ActionKind& kind = findKind(node, actor);
    std::vector<std::string_view> keys(otherKeys.begin(), otherKeys.end());
    keys.push_back(kind.key);
    node.requireKeys(keys, kind.moreKeys);
    return {node.path(), kind.read(node.at(kind.key), {node, settings}), std::nullopt};
}

}  // namespace mireth::phone
