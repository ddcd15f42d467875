// Plays a whole script in its time, from the first screen to the "end" line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "phone/RecordedLibrary.hpp"
#include "phone/Reporter.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScreenSet.hpp"
#include "phone/ScriptTimers.hpp"
#include "phone/StepPlayer.hpp"

namespace mireth::phone {

struct ScriptOutcome {
    /// Answers that steps did not expect, and calls that never answered; one line each.
    std::vector<std::string> surprises;
};

/// Steps with the same `at` belong to one turn of the main thread: nothing runs between them, not even an
/// answer, just as when an app makes the calls one after the other. What they set off then runs to its end
/// before time advances.
class ScriptRunner {
  public:
    /// How long calls and the library's delayed work may take after the script's last instant.
    static constexpr std::chrono::seconds patienceForCalls{60};
    static constexpr std::chrono::seconds patienceForDelays{10};

    ScriptRunner(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
                 RecordedLibrary& library, Reporter& reporter);

    /// Main thread; called once. Throws ScenarioError when a step cannot be carried out.
    ScriptOutcome run();

  private:
    void schedule();
    void playTurn(std::size_t first, std::size_t count);
    void runToTheEnd();
    bool isFinished() const;
    /// Of what the script did by itself or set for later.
    Instant lastInstant() const;

    const Scenario& scenario_;
    headless::HeadlessPlatform& phone_;
    ScreenSet& screens_;
    RecordedLibrary& library_;
    Reporter& reporter_;
    ScriptOutcome outcome_;
    ScriptTimers timers_;
    StepPlayer player_;
    /// In the order in which they are played.
    std::vector<const Step*> order_;
    std::size_t played_ = 0;
    std::optional<std::exception_ptr> failure_;
};

}  // namespace mireth::phone
