// One function for each kind of step.
#include "phone/StepPlayer.hpp"

#include <utility>
#include <variant>

#include "phone/ScenarioError.hpp"

namespace mireth::phone {

StepPlayer::StepPlayer(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
                       RecordedLibrary& library, Reporter& reporter, Surprise surprise)
    : scenario_(scenario),
      phone_(phone),
      screens_(screens),
      library_(library),
      reporter_(reporter),
      surprise_(std::move(surprise)) {}

void StepPlayer::initializeProject() {
    Step step;
    step.path = "$.project";
    carryOut(InitializeStep{scenario_.brandId, scenario_.projectId, true}, step);
}

void StepPlayer::play(const Step& step) {
    std::visit([this, &step](const auto& action) { carryOut(action, step); }, step.action);
}

void StepPlayer::carryOut(const InitializeStep& action, const Step& step) {
    const auto keyWindow = phone_.application().keyWindow();
    phone_.application().setKeyWindow(action.window ? keyWindow : nullptr);
    const auto result = library_.initializeProject(action.brandId, action.projectId,
                                                   action.window ? screens_.window() : nullptr);
    phone_.application().setKeyWindow(keyWindow);
    report(CallAnswer::of("initializeProject", caseName(result)), step);
}

void StepPlayer::carryOut(const CallStep& action, const Step& step) {
    const std::string call(toString(action.call));
    switch (action.call) {
        case LibraryCall::startRecording:
            start(step);
            break;
        case LibraryCall::stopRecording:
            stop(step);
            break;
        case LibraryCall::pauseRecording:
            report(CallAnswer::of(call, caseName(library_.pauseRecording())), step);
            break;
        case LibraryCall::resumeRecording:
            report(CallAnswer::of(call, caseName(library_.resumeRecording())), step);
            break;
        case LibraryCall::reset:
            library_.reset();
            break;
    }
}

void StepPlayer::carryOut(const PresentStep& action, const Step&) {
    screens_.present(action.screen, phone_.application().appearance());
}

void StepPlayer::carryOut(const SetStep& action, const Step& step) {
    screens_.set(action.id, action.settings, step.path);
}

void StepPlayer::carryOut(const LogErrorStep& action, const Step&) {
    library_.logError(action.message);
}

void StepPlayer::carryOut(const ReportScreenStep& action, const Step&) {
    if (action.appeared) {
        library_.reportScreenAppeared(action.name);
    } else {
        library_.reportScreenDisappeared(action.name);
    }
}

void StepPlayer::carryOut(const ReportScreenChangeStep& action, const Step&) {
    library_.reportScreenChange(action.hierarchy, action.changeType, action.detectionType);
}

void StepPlayer::carryOut(const SignalStep& action, const Step&) {
    library_.recordSignal(action.type, action.target);
}

void StepPlayer::carryOut(const ResizeStep& action, const Step&) {
    screens_.resize(action.size);
}

void StepPlayer::carryOut(const MoveToBackgroundStep&, const Step&) {
    phone_.application().moveToBackground();
}

void StepPlayer::carryOut(const NetworkStep& action, const Step&) {
    phone_.network().setPath(action.path);
}

void StepPlayer::carryOut(const SystemClockStep& action, const Step&) {
    phone_.clock().jump(action.jump);
}

void StepPlayer::carryOut(const WaitStep&, const Step&) {}

void StepPlayer::start(const Step& step) {
    ++*pendingCalls_;
    library_.startRecording(configuration(), [this, &step, pending = pendingCalls_](const auto& result) {
        --*pending;
        report(CallAnswer::of("startRecording", result), step);
    });
}

void StepPlayer::stop(const Step& step) {
    ++*pendingCalls_;
    library_.stopRecording([this, &step, pending = pendingCalls_](const auto& result) {
        --*pending;
        report(CallAnswer::of("stopRecording", result), step);
    });
}

VexConfiguration StepPlayer::configuration() const {
    auto configuration =
        VexConfiguration::create(scenario_.additionalViewTypesToMask, scenario_.automaticNavigationTracking);
    if (!configuration) {
        throw ScenarioError("$.configuration.additionalViewTypesToMask",
                            configuration.error().errorDescription());
    }
    configuration->disableMasking = scenario_.disableMasking;
    return *std::move(configuration);
}

void StepPlayer::report(const CallAnswer& answer, const Step& step) {
    reporter_.answer(phone_.queue().now(), answer);
    if (step.expect && *step.expect != answer.result) {
        surprise_(step.path + ": " + answer.call + " answered " + answer.result + ", not " + *step.expect);
    }
}

}  // namespace mireth::phone
