// The rules of detection once more, as plain as they can be said: what the library makes of a host's calls,
// of touches and of screens.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/DueList.hpp"
#include "model/Rules.hpp"
#include "model/ScreenModel.hpp"
#include "model/TimelineModel.hpp"

namespace mireth::model {

/// A finger on the window, from its begin to its end.
struct Finger {
    std::uint64_t identity = 0;
    Point point;
    int tapCount = 1;
};

class LibraryModel {
  public:
    /// What the library learns from the phone.
    struct Surroundings {
        std::function<std::int64_t()> wallMillis;
        std::function<std::int64_t()> uptimeMillis;
        std::function<Picture()> picture;
    };

    /// All but `rules` outlives it.
    LibraryModel(const Rules& rules, const phone::Scenario& scenario, Surroundings surroundings, DueList& due,
                 Outcome& outcome);

    void startRecording();
    void stopRecording();
    void pauseRecording();
    void resumeRecording();
    void movedToBackground();
    void logError(const std::optional<std::string>& message);
    void reportScreen(const std::vector<ScreenHierarchyElement>& hierarchy, ScreenChangeType change,
                      ScreenDetectionType detection);
    /// The toolkit tells a controller.
    void controllerChanged(const std::string& name, ScreenChangeType change);

    void touchBegan(const Finger& finger);
    void touchMoved(const Finger& finger);
    void touchEnded(const Finger& finger);
    void touchCancelled(const Finger& finger);

  private:
    enum class State { stopped, starting, started, paused };

    struct Session {
        TimelineModel timeline;
        int frames = 0;
        bool hasSize = false;
        bool isPaused = false;
    };

    void beginSession();
    void endSession();
    void scheduleFrame(std::uint64_t place);
    void frame();
    bool isPaused() const { return session_ && session_->isPaused; }
    void singleTap(const Tap& tap);
    void record(std::int64_t timestamp, const char* type, Json details);
    /// What the detector found; only while it may say so, and once it is known where in the video it belongs.
    void recordDetected(std::int64_t timestamp, const char* type, Json details);
    void recordSignal(const Tap& tap, const char* signal);
    void answer(const std::string& call, const std::string& result);
    void complain(const std::string& text);
    std::chrono::milliseconds wait() const;

    const Rules rules_;
    const phone::Scenario& scenario_;
    const Surroundings surroundings_;
    DueList& due_;
    Outcome& outcome_;

    State state_ = State::stopped;
    bool reportsScreens_ = false;
    int sessions_ = 0;
    /// From the start of the recorder to its stop.
    std::optional<Session> session_;
    /// A session that is stopped in a pause leaves it so.
    bool detectionIsPaused_ = false;
    /// The fingers it has seen begin, and whether they have moved.
    std::map<std::uint64_t, bool> fingers_;

    struct LastTap {
        Point point;
        std::int64_t wallMillis = 0;
    };
    std::optional<LastTap> lastTap_;
};

}  // namespace mireth::model
