// Steps: an instant, an action, and what its call has to answer.
#include "phone/StepReader.hpp"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "phone/ActionReader.hpp"

namespace mireth::phone {

namespace {

constexpr std::size_t mostSteps = 100'000;

/// The names of the cases that the action's call can answer; empty when it answers nothing.
std::vector<std::string_view> possibleAnswers(const Action& action) {
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

std::string readExpect(const JsonNode& node, const Action& action) {
    const auto answers = possibleAnswers(action);
    if (answers.empty()) {
        node.fail("belongs to a step whose call answers nothing");
    }
    return std::string(answers[node.choice(answers)]);
}

Step readStep(const JsonNode& node, const SettingsReader& settings) {
    static constexpr std::array<std::string_view, 2> keys{"at", "expect"};
    Step step;
    static_cast<Instruction&>(step) = readInstruction(node, Actor::script, keys, settings);
    step.at = readSpan(node.at("at"));
    if (const auto expect = node.find("expect")) {
        step.expect = readExpect(*expect, step.action);
    }
    return step;
}

}  // namespace

std::vector<Step> readSteps(const JsonNode& list, const SettingsReader& settings) {
    std::vector<Step> steps;
    for (const auto& node : list.elements(0, mostSteps)) {
        steps.push_back(readStep(node, settings));
    }
    return steps;
}

}  // namespace mireth::phone
