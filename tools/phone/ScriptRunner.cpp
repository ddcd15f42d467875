// Puts the steps on the queue, turn by turn, and drives it to the end.
#include "phone/ScriptRunner.hpp"

#include <algorithm>
#include <exception>
#include <utility>

namespace mireth::phone {

ScriptRunner::ScriptRunner(const Scenario& scenario, headless::HeadlessPlatform& phone, ScreenSet& screens,
                           RecordedLibrary& library, Reporter& reporter)
    : scenario_(scenario),
      phone_(phone),
      screens_(screens),
      library_(library),
      reporter_(reporter),
      timers_(phone.queue(), [this](const std::exception_ptr& failure) { failure_ = failure; }),
      player_(scenario, phone, screens, library, reporter, timers_,
              [this](const std::string& line) { outcome_.surprises.push_back(line); }) {}

ScriptOutcome ScriptRunner::run() {
    phone_.application().setKeyWindow(screens_.window());
    schedule();
    runToTheEnd();
    if (failure_) {
        std::rethrow_exception(*failure_);
    }
    if (player_.pendingCalls() > 0) {
        outcome_.surprises.emplace_back("a call of the library never answered");
    }
    reporter_.end(phone_.queue().now(), library_.hasActiveSession(), library_.stateName());
    return std::move(outcome_);
}

void ScriptRunner::schedule() {
    for (const auto& step : scenario_.steps) {
        order_.push_back(&step);
    }
    std::ranges::stable_sort(order_, {}, &Step::at);
    // The app is there before its script begins.
    phone_.queue().post([this] {
        screens_.present(scenario_.screens.front().name, phone_.application().appearance());
        const bool initializes = std::ranges::any_of(scenario_.steps, [](const Step& step) {
            return std::holds_alternative<InitializeStep>(step.action);
        });
        if (!initializes) {
            player_.initializeProject();
        }
    });
    for (std::size_t first = 0; first < order_.size();) {
        const Instant at = order_[first]->at;
        const auto end =
            std::ranges::find_if(order_.begin() + static_cast<std::ptrdiff_t>(first), order_.end(),
                                 [at](const Step* step) { return step->at != at; });
        const auto count = static_cast<std::size_t>(end - order_.begin()) - first;
        phone_.queue().scheduleStep(at, [this, first, count] { playTurn(first, count); });
        first += count;
    }
}

void ScriptRunner::playTurn(std::size_t first, std::size_t count) {
    for (std::size_t index = first; index < first + count && !failure_; ++index) {
        try {
            player_.play(*order_[index]);
        } catch (...) {
            failure_ = std::current_exception();
        }
        ++played_;
    }
}

void ScriptRunner::runToTheEnd() {
    auto& queue = phone_.queue();
    queue.runUntil([this] { return failure_ || (played_ == order_.size() && timers_.pending() == 0); });
    const Instant limit = lastInstant() + patienceForCalls;
    do {
        queue.drain();
    } while (!failure_ && !isFinished() && queue.now() < limit &&
             queue.runUntil([this] { return isFinished(); }, limit));
    queue.drain();
}

bool ScriptRunner::isFinished() const {
    return player_.pendingCalls() == 0 && phone_.queue().onceCount(lastInstant() + patienceForDelays) == 0;
}

Instant ScriptRunner::lastInstant() const {
    return std::max(order_.empty() ? Instant(0) : order_.back()->at, timers_.lastRun());
}

}  // namespace mireth::phone
