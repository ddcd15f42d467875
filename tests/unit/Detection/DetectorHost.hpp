// A timeline event detector on a window, with a main queue that runs when a test says so.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "PrivateSide/Detection/TimelineEventDetector.hpp"
#include "support/Finger.hpp"
#include "support/LogCapture.hpp"
#include "support/ManualMainQueue.hpp"

namespace mireth::test {

/// What the tests compare of an event: its kind's key, its time and its point.
struct Seen {
    std::string key;
    std::int64_t timestamp;
    Target target;
    bool operator==(const Seen&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Seen& seen) {
    return out << seen.key << " at " << seen.timestamp << " (" << seen.target.x << ", " << seen.target.y
               << ")";
}

/// The wall clock stands at 1 s. Nothing is started.
class DetectorHost : public testing::Test {
  public:
    LogCapture capture{{LogTag::signal}};
    std::shared_ptr<ManualMainQueue> queue = std::make_shared<ManualMainQueue>();
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<TimelineEventDetector> detector = make(queue);
    std::vector<Seen> seen;
    Finger finger{window};

    std::shared_ptr<TimelineEventDetector> make(std::shared_ptr<platform::MainQueue> mainQueue) {
        return std::make_shared<TimelineEventDetector>(
            capture.log(), window,
            std::make_unique<MirethGestureRecognizer>(capture.log(),
                                                      std::make_shared<GestureRecognizerObserver>()),
            TimelineEventDetector::Environment{std::move(mainQueue), [] { return Date(1); },
                                               DevicePerformanceEvaluator(0)});
    }

    void remember(const EventData& data) {
        const auto* signal = dynamic_cast<const SessionSignalData*>(&data);
        const auto* interaction = dynamic_cast<const SessionInteractionData*>(&data);
        ASSERT_TRUE(signal != nullptr || interaction != nullptr);
        seen.push_back({std::string(key(data.type())), data.timestamp(),
                        signal != nullptr ? signal->target() : interaction->target()});
    }
    TimelineEventDetector::SessionEventCallback remembering() {
        return [this](const EventData& data) { remember(data); };
    }

    /// Attached when it returns.
    void start() {
        detector->startDetection(remembering());
        queue->runAll();
    }
    void fourQuickTaps() {
        for (int tap = 1; tap <= 4; ++tap) {
            finger.tap({10, 20}, tap, tap);
        }
    }
};

}  // namespace mireth::test
