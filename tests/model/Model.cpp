#include "model/Model.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <utility>
#include <variant>

#include "model/DueList.hpp"
#include "model/LibraryModel.hpp"
#include "model/ScreenModel.hpp"

namespace mireth::model {

namespace {

using namespace std::chrono_literals;

constexpr auto touchLasts = 80ms;
constexpr auto runPause = 350ms;
constexpr double runDistance = 40;
constexpr int movesOfASwipe = 5;

/// The scripted phone: its clocks, its fingers, its app.
class PhoneModel {
  public:
    PhoneModel(const phone::Scenario& scenario, const Rules& rules)
        : scenario_(scenario),
          screens_(scenario),
          library_(rules, scenario,
                   {[this] { return wallMillis(); }, [this] { return uptimeMillis(); },
                    [this] { return screens_.picture(); }},
                   due_, outcome_) {}

    Outcome run() {
        outcome_.lines.push_back(answerLine(0, "initializeProject", "success"));
        auto steps = scenario_.steps;
        std::ranges::stable_sort(steps, {}, &phone::Step::at);
        for (auto first = steps.begin(); first != steps.end();) {
            const auto last = std::ranges::find_if(first, steps.end(),
                                                   [&](const auto& step) { return step.at != first->at; });
            due_.step(first->at, [this, first, last] {
                std::for_each(first, last, [this](const phone::Step& step) { play(step); });
            });
            first = last;
        }
        due_.run();
        return std::move(outcome_);
    }

  private:
    std::int64_t wallMillis() const { return (scenario_.epochMillis * 1ms + wallJumps_ + due_.now()) / 1ms; }
    /// The uptime is told in seconds.
    std::int64_t uptimeMillis() const {
        const double seconds = scenario_.uptimeSeconds + static_cast<double>(due_.now().count()) / 1e9;
        return static_cast<std::int64_t>(seconds * 1000);
    }

    void play(const phone::Instruction& instruction) {
        std::visit([this](const auto& action) { carryOut(action); }, instruction.action);
    }

    void carryOut(const phone::CallStep& step) {
        switch (step.call) {
            case phone::LibraryCall::startRecording:
                return library_.startRecording();
            case phone::LibraryCall::stopRecording:
                return library_.stopRecording();
            case phone::LibraryCall::pauseRecording:
                return library_.pauseRecording();
            case phone::LibraryCall::resumeRecording:
                return library_.resumeRecording();
            case phone::LibraryCall::reset:
                break;
        }
    }
    void carryOut(const phone::TapStep& step) {
        tap(step.at);
        if (step.times > 1) {
            due_.after(step.interval, [this, rest = phone::TapStep{step.at, step.times - 1, step.interval}] {
                carryOut(rest);
            });
        }
    }
    void carryOut(const phone::SwipeStep& step) {
        const Finger finger = begin(step.from);
        for (int index = 1; index <= movesOfASwipe; ++index) {
            due_.after(step.duration * index / (movesOfASwipe + 1),
                       [this, finger] { library_.touchMoved(finger); });
        }
        due_.after(step.duration,
                   [this, finger, to = step.to] { end({finger.identity, to, finger.tapCount}); });
    }
    void carryOut(const phone::CancelledTouchStep& step) {
        due_.after(touchLasts, [this, finger = begin(step.at)] { library_.touchCancelled(finger); });
    }
    void carryOut(const phone::PresentStep& step) {
        const std::string previous = screens_.presented();
        screens_.present(step.screen);
        library_.controllerChanged(previous, ScreenChangeType::disappear);
        library_.controllerChanged(step.screen, ScreenChangeType::appear);
    }
    void carryOut(const phone::SetStep& step) { screens_.set(step.id, step.settings); }
    void carryOut(const phone::LogErrorStep& step) { library_.logError(step.message); }
    void carryOut(const phone::ReportScreenStep& step) {
        library_.reportScreen({ScreenHierarchyElement{step.name}},
                              step.appeared ? ScreenChangeType::appear : ScreenChangeType::disappear,
                              ScreenDetectionType::manual);
    }
    void carryOut(const phone::ReportScreenChangeStep& step) {
        library_.reportScreen(step.hierarchy, step.changeType, step.detectionType);
    }
    void carryOut(const phone::MoveToBackgroundStep&) { library_.movedToBackground(); }
    void carryOut(const phone::SystemClockStep& step) { wallJumps_ += step.jump; }
    void carryOut(const phone::WaitStep&) {}
    void carryOut(const phone::InitializeStep&) {}
    void carryOut(const phone::SignalStep&) {}
    void carryOut(const phone::ResizeStep&) {}
    void carryOut(const phone::NetworkStep&) {}

    void tap(Point at) {
        const auto* view = screens_.viewAt(at);
        due_.after(touchLasts, [this, view, finger = begin(at)] {
            end(finger);
            react(view, finger.point);
        });
    }
    Finger begin(Point at) {
        const bool goesOn = lastEnd_ && due_.now() - lastEnd_->at < runPause &&
                            std::hypot(at.x - lastEnd_->point.x, at.y - lastEnd_->point.y) <= runDistance;
        const Finger finger{nextFinger_++, at, goesOn ? lastEnd_->tapCount + 1 : 1};
        library_.touchBegan(finger);
        return finger;
    }
    void end(const Finger& finger) {
        lastEnd_ = {due_.now(), finger.point, finger.tapCount};
        library_.touchEnded(finger);
    }
    /// The view that was touched reacts if it still gets the touch.
    void react(const ScreenModel::View* touched, Point at) {
        const auto* reactions = ScreenModel::reactionsOf(touched);
        if (reactions == nullptr || reactions != ScreenModel::reactionsOf(screens_.viewAt(at))) {
            return;
        }
        for (const auto& reaction : *reactions) {
            if (reaction.after > 0ns) {
                due_.after(reaction.after, [this, &reaction] { play(reaction); });
            } else {
                play(reaction);
            }
        }
    }

    struct End {
        std::chrono::nanoseconds at;
        Point point;
        int tapCount = 1;
    };

    const phone::Scenario& scenario_;
    DueList due_;
    Outcome outcome_;
    ScreenModel screens_;
    LibraryModel library_;
    std::chrono::nanoseconds wallJumps_{0};
    std::optional<End> lastEnd_;
    std::uint64_t nextFinger_ = 1;
};

}  // namespace

Outcome foretell(const phone::Scenario& scenario, const Rules& rules) {
    return PhoneModel(scenario, rules).run();
}

}  // namespace mireth::model
