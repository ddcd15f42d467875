// Carries out single steps and reactions: calls the library, changes the phone, and reports what came back.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "phone/RecordedLibrary.hpp"
#include "phone/Reporter.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScreenSet.hpp"
#include "phone/ScriptTimers.hpp"
#include "phone/TouchPlayer.hpp"

namespace mireth::phone {

/// Main thread only. What it is given outlives it and all that it set off.
class StepPlayer {
  public:
    /// Told, as one line, of an answer that a step did not expect.
    using Surprise = std::function<void(const std::string&)>;

    StepPlayer(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
               RecordedLibrary& library, Reporter& reporter, ScriptTimers& timers, Surprise surprise);

    /// Initialises the scenario's own project.
    void initializeProject();
    /// Carries out a step or a reaction. Throws ScenarioError when that is impossible.
    void play(const Instruction& instruction);
    /// Calls that have not answered yet.
    std::size_t pendingCalls() const noexcept { return *pendingCalls_; }

  private:
    void carryOut(const InitializeStep& action, const Instruction& instruction);
    void carryOut(const CallStep& action, const Instruction& instruction);
    void carryOut(const TapStep& action, const Instruction& instruction);
    void carryOut(const SwipeStep& action, const Instruction& instruction);
    void carryOut(const CancelledTouchStep& action, const Instruction& instruction);
    void carryOut(const PresentStep& action, const Instruction& instruction);
    void carryOut(const SetStep& action, const Instruction& instruction);
    void carryOut(const LogErrorStep& action, const Instruction& instruction);
    void carryOut(const ReportScreenStep& action, const Instruction& instruction);
    void carryOut(const ReportScreenChangeStep& action, const Instruction& instruction);
    void carryOut(const SignalStep& action, const Instruction& instruction);
    void carryOut(const ResizeStep& action, const Instruction& instruction);
    void carryOut(const MoveToBackgroundStep& action, const Instruction& instruction);
    void carryOut(const NetworkStep& action, const Instruction& instruction);
    void carryOut(const SystemClockStep& action, const Instruction& instruction);
    void carryOut(const WaitStep& action, const Instruction& instruction);

    void react(const std::vector<Reaction>& reactions);
    void start(const Instruction& instruction);
    void stop(const Instruction& instruction);
    VexConfiguration configuration() const;
    void report(const CallAnswer& answer, const Instruction& instruction);

    const Scenario& scenario_;
    headless::HeadlessPlatform& phone_;
    ScreenSet& screens_;
    RecordedLibrary& library_;
    Reporter& reporter_;
    ScriptTimers& timers_;
    const Surprise surprise_;
    const std::shared_ptr<std::size_t> pendingCalls_ = std::make_shared<std::size_t>(0);
    TouchPlayer touches_;
};

}  // namespace mireth::phone
