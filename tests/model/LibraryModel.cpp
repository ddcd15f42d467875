#include "model/LibraryModel.hpp"

#include <utility>

namespace mireth::model {

LibraryModel::LibraryModel(const Rules& rules, const phone::Scenario& scenario, Surroundings surroundings,
                           DueList& due, Outcome& outcome)
    : rules_(rules),
      scenario_(scenario),
      surroundings_(std::move(surroundings)),
      due_(due),
      outcome_(outcome) {}

void LibraryModel::startRecording() {
    if (state_ != State::stopped) {
        due_.afterTurn([this] { answer("startRecording", "alreadyStarted"); });
        return;
    }
    reportsScreens_ = scenario_.automaticNavigationTracking;
    state_ = State::starting;
    due_.afterTurn([this] {
        state_ = State::started;
        beginSession();
        answer("startRecording", "success");
    });
}

void LibraryModel::stopRecording() {
    if (state_ != State::started && state_ != State::paused) {
        due_.afterTurn([this] { answer("stopRecording", "notStarted"); });
        return;
    }
    endSession();
    due_.afterTurn([this] { answer("stopRecording", "success"); });
}

void LibraryModel::movedToBackground() {
    if (state_ == State::started || state_ == State::paused) {
        endSession();
    }
}

void LibraryModel::pauseRecording() {
    if (state_ == State::started) {
        state_ = State::paused;
        session_->isPaused = detectionIsPaused_ = true;
        answer("pauseRecording", "success");
    } else {
        answer("pauseRecording", state_ == State::paused ? "alreadyPaused" : "notStarted");
    }
}

void LibraryModel::resumeRecording() {
    if (state_ == State::paused) {
        state_ = State::started;
        session_->isPaused = detectionIsPaused_ = false;
        answer("resumeRecording", "success");
    } else {
        answer("resumeRecording", state_ == State::started ? "notPaused" : "notStarted");
    }
}

void LibraryModel::beginSession() {
    session_.emplace(Session{TimelineModel("S" + std::to_string(++sessions_), outcome_.events)});
    lastTap_.reset();
    detectionIsPaused_ = false;
    record(surroundings_.wallMillis(), "SessionStartMarker", nullptr);
    record(surroundings_.wallMillis(), "MetadataCaptured", metadataOf(scenario_));
    scheduleFrame(due_.takePlace());
}

void LibraryModel::endSession() {
    reportsScreens_ = false;
    // What no frame followed is in no chunk.
    if (session_->frames > 0) {
        session_->timeline.endChunk(surroundings_.wallMillis());
    }
    session_.reset();
    fingers_.clear();
    state_ = State::stopped;
}

void LibraryModel::scheduleFrame(std::uint64_t place) {
    due_.afterInPlace(rules_.framePause, place, [this, place, session = sessions_] {
        if (session_ && session == sessions_) {
            frame();
            scheduleFrame(place);
        }
    });
}

void LibraryModel::frame() {
    if (!session_->hasSize) {
        session_->hasSize = true;
        record(surroundings_.wallMillis(), "WindowDimensions", windowDimensionsOf(scenario_));
    }
    if (++session_->frames == rules_.framesPerChunk) {
        session_->frames = 0;
        session_->timeline.endChunk(surroundings_.wallMillis());
    }
}

void LibraryModel::logError(const std::optional<std::string>& message) {
    if (state_ != State::started) {
        complain("Can't record log error without starting the session first");
        return;
    }
    const std::int64_t now = surroundings_.wallMillis();
    if (lastTap_ && now - lastTap_->wallMillis < rules_.errorMillis) {
        Json details{{"signalId", "ErrorTap"}, {"target", targetOf(lastTap_->point, scenario_)}};
        details["error"] = {{"message", message.value_or("")}};
        recordDetected(now, "SignalCaptured", std::move(details));
        if (rules_.tapsPairOnce) {
            lastTap_.reset();
        }
    }
}

void LibraryModel::reportScreen(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                                ScreenDetectionType detection) {
    if (state_ != State::started) {
        complain("Can't record screen disappearance without starting the session first");
    } else if (hierarchy.empty()) {
        complain("Screen hierarchy cannot be empty");
    } else {
        record(surroundings_.wallMillis(), "ScreenChange", screenChangeOf(hierarchy, change, detection));
    }
}

void LibraryModel::controllerChanged(const std::string& name, ScreenChangeType change) {
    if (reportsScreens_) {
        reportScreen({ScreenHierarchyElement{name}}, change, ScreenDetectionType::automatic);
    }
}

void LibraryModel::touchBegan(const Finger& finger) {
    if (session_) {
        fingers_[finger.identity] = false;
    }
}

void LibraryModel::touchMoved(const Finger& finger) {
    if (const auto found = fingers_.find(finger.identity); found != fingers_.end()) {
        found->second = true;
    }
}

void LibraryModel::touchCancelled(const Finger& finger) {
    fingers_.erase(finger.identity);
}

void LibraryModel::touchEnded(const Finger& finger) {
    const auto ended = fingers_.extract(finger.identity);
    if (ended.empty() || ended.mapped()) {
        return;
    }
    const Tap tap{finger.point, surroundings_.uptimeMillis()};
    if (finger.tapCount == 1) {
        singleTap(tap);
    } else if (finger.tapCount == rules_.rageTap || (rules_.rageGoesOn && finger.tapCount > rules_.rageTap)) {
        recordSignal(tap, "RageTap");
    }
}

void LibraryModel::singleTap(const Tap& tap) {
    const bool isInPause = isPaused() && !rules_.tapsInPausesCount;
    if (isInPause) {
        lastTap_.reset();
    } else {
        lastTap_ = {tap.point, surroundings_.wallMillis()};
    }
    due_.after(wait(), [this, tap, session = sessions_, isInPause, before = surroundings_.picture()] {
        const bool mayBeTold = session == sessions_ && (detectionIsPaused_ || !isInPause);
        if (mayBeTold && looksTheSame(before, surroundings_.picture(), rules_)) {
            recordSignal(tap, "DeadTap");
        }
    });
    recordDetected(tap.uptimeMillis, "UserInteraction",
                   {{"interactionId", "Tap"}, {"target", targetOf(tap.point, scenario_)}});
}

void LibraryModel::recordSignal(const Tap& tap, const char* signal) {
    recordDetected(tap.uptimeMillis, "SignalCaptured",
                   {{"signalId", signal}, {"target", targetOf(tap.point, scenario_)}});
}

void LibraryModel::recordDetected(std::int64_t timestamp, const char* type, Json details) {
    if (!session_ || (isPaused() && !rules_.pauseLetsPass)) {
        complain("Could not record event - event callback is nil");
    } else if (!session_->hasSize) {
        complain("Failed to record event");
    } else {
        record(timestamp, type, std::move(details));
    }
}

void LibraryModel::record(std::int64_t timestamp, const char* type, Json details) {
    session_->timeline.add(timestamp, type, std::move(details));
}

void LibraryModel::answer(const std::string& call, const std::string& result) {
    outcome_.lines.push_back(answerLine(due_.nowMillis(), call, result));
}

void LibraryModel::complain(const std::string& text) {
    outcome_.lines.push_back(errorLine(due_.nowMillis(), text));
}

std::chrono::milliseconds LibraryModel::wait() const {
    const std::uint64_t mebibytes = scenario_.device.physicalMemory >> 20U;
    if (mebibytes < 3000) {
        return rules_.slowDeviceWait;
    }
    return mebibytes < 6000 ? rules_.averageDeviceWait : rules_.fastDeviceWait;
}

}  // namespace mireth::model
