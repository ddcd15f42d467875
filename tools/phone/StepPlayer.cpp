// One function for each kind of step.
#include "phone/StepPlayer.hpp"

#include <utility>
#include <variant>

#include "phone/ScenarioError.hpp"

namespace mireth::phone {

StepPlayer::StepPlayer(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
                       RecordedLibrary& library, Reporter& reporter, ScriptTimers& timers, Surprise surprise)
    : scenario_(scenario),
      phone_(phone),
      screens_(screens),
      library_(library),
      reporter_(reporter),
      timers_(timers),
      surprise_(std::move(surprise)),
      touches_(phone.clock(), screens, timers,
               [this](const std::vector<Reaction>& reactions) { react(reactions); }) {}

void StepPlayer::initializeProject() {
    play({"$.project", InitializeStep{scenario_.brandId, scenario_.projectId, true}, std::nullopt});
}

void StepPlayer::play(const Instruction& instruction) {
    std::visit([this, &instruction](const auto& action) { carryOut(action, instruction); },
               instruction.action);
}

void StepPlayer::react(const std::vector<Reaction>& reactions) {
    for (const auto& reaction : reactions) {
        if (reaction.after > std::chrono::nanoseconds(0)) {
            timers_.set(reaction.after, [this, &reaction] { play(reaction); });
        } else {
            play(reaction);
        }
    }
}

void StepPlayer::carryOut(const InitializeStep& action, const Instruction& instruction) {
    const auto keyWindow = phone_.application().keyWindow();
    phone_.application().setKeyWindow(action.window ? keyWindow : nullptr);
    const auto result = library_.initializeProject(action.brandId, action.projectId,
                                                   action.window ? screens_.window() : nullptr);
    phone_.application().setKeyWindow(keyWindow);
    report(CallAnswer::of("initializeProject", caseName(result)), instruction);
}

void StepPlayer::carryOut(const CallStep& action, const Instruction& instruction) {
    const std::string call(toString(action.call));
    switch (action.call) {
        case LibraryCall::startRecording:
            start(instruction);
            break;
        case LibraryCall::stopRecording:
            stop(instruction);
            break;
        case LibraryCall::pauseRecording:
            report(CallAnswer::of(call, caseName(library_.pauseRecording())), instruction);
            break;
        case LibraryCall::resumeRecording:
            report(CallAnswer::of(call, caseName(library_.resumeRecording())), instruction);
            break;
        case LibraryCall::reset:
            library_.reset();
            break;
    }
}

void StepPlayer::carryOut(const TapStep& action, const Instruction&) {
    touches_.play(action);
}

void StepPlayer::carryOut(const SwipeStep& action, const Instruction&) {
    touches_.play(action);
}

void StepPlayer::carryOut(const CancelledTouchStep& action, const Instruction&) {
    touches_.play(action);
}

void StepPlayer::carryOut(const PresentStep& action, const Instruction&) {
    screens_.present(action.screen, phone_.application().appearance());
}

void StepPlayer::carryOut(const SetStep& action, const Instruction& instruction) {
    screens_.set(action.id, action.settings, instruction.path);
}

void StepPlayer::carryOut(const LogErrorStep& action, const Instruction&) {
    library_.logError(action.message);
}

void StepPlayer::carryOut(const ReportScreenStep& action, const Instruction&) {
    if (action.appeared) {
        library_.reportScreenAppeared(action.name);
    } else {
        library_.reportScreenDisappeared(action.name);
    }
}

void StepPlayer::carryOut(const ReportScreenChangeStep& action, const Instruction&) {
    library_.reportScreenChange(action.hierarchy, action.changeType, action.detectionType);
}

void StepPlayer::carryOut(const SignalStep& action, const Instruction&) {
    library_.recordSignal(action.type, action.target);
}

void StepPlayer::carryOut(const ResizeStep& action, const Instruction&) {
    screens_.resize(action.size);
}

void StepPlayer::carryOut(const MoveToBackgroundStep&, const Instruction&) {
    phone_.application().moveToBackground();
}

void StepPlayer::carryOut(const NetworkStep& action, const Instruction&) {
    phone_.network().setPath(action.path);
}

void StepPlayer::carryOut(const SystemClockStep& action, const Instruction&) {
    phone_.clock().jump(action.jump);
}

void StepPlayer::carryOut(const WaitStep&, const Instruction&) {}

void StepPlayer::start(const Instruction& instruction) {
    ++*pendingCalls_;
    library_.startRecording(configuration(),
                            [this, &instruction, pending = pendingCalls_](const auto& result) {
                                --*pending;
                                report(CallAnswer::of("startRecording", result), instruction);
                            });
}

void StepPlayer::stop(const Instruction& instruction) {
    ++*pendingCalls_;
    library_.stopRecording([this, &instruction, pending = pendingCalls_](const auto& result) {
        --*pending;
        report(CallAnswer::of("stopRecording", result), instruction);
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

void StepPlayer::report(const CallAnswer& answer, const Instruction& instruction) {
    reporter_.answer(phone_.queue().now(), answer);
    if (instruction.expect && *instruction.expect != answer.result) {
        surprise_(instruction.path + ": " + answer.call + " answered " + answer.result + ", not " +
                  *instruction.expect);
    }
}

}  // namespace mireth::phone
