// Carries out single steps: calls the library, changes the phone, and reports what came back.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "phone/RecordedLibrary.hpp"
#include "phone/Reporter.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScreenSet.hpp"

namespace mireth::phone {

/// Main thread only. What it is given outlives it and all that it set off.
class StepPlayer {
  public:
    /// Told, as one line, of an answer that a step did not expect.
    using Surprise = std::function<void(const std::string&)>;

    StepPlayer(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
               RecordedLibrary& library, Reporter& reporter, Surprise surprise);

    /// Initialises the scenario's own project.
    void initializeProject();
    /// Throws ScenarioError when the step cannot be carried out.
    void play(const Step& step);
    /// Calls that have not answered yet.
    std::size_t pendingCalls() const noexcept { return *pendingCalls_; }

  private:
    void carryOut(const InitializeStep& action, const Step& step);
    void carryOut(const CallStep& action, const Step& step);
    void carryOut(const PresentStep& action, const Step& step);
    void carryOut(const SetStep& action, const Step& step);
    void carryOut(const LogErrorStep& action, const Step& step);
    void carryOut(const ReportScreenStep& action, const Step& step);
    void carryOut(const ReportScreenChangeStep& action, const Step& step);
    void carryOut(const SignalStep& action, const Step& step);
    void carryOut(const ResizeStep& action, const Step& step);
    void carryOut(const MoveToBackgroundStep& action, const Step& step);
    void carryOut(const NetworkStep& action, const Step& step);
    void carryOut(const SystemClockStep& action, const Step& step);
    void carryOut(const WaitStep& action, const Step& step);

    void start(const Step& step);
    void stop(const Step& step);
    VexConfiguration configuration() const;
    void report(const CallAnswer& answer, const Step& step);

    const Scenario& scenario_;
    headless::HeadlessPlatform& phone_;
    ScreenSet& screens_;
    RecordedLibrary& library_;
    Reporter& reporter_;
    const Surprise surprise_;
    const std::shared_ptr<std::size_t> pendingCalls_ = std::make_shared<std::size_t>(0);
};

}  // namespace mireth::phone
