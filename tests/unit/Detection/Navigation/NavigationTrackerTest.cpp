// From a recorded change to a published event, and what the listener hears of it.
#include "PrivateSide/Detection/Navigation/NavigationTracker.hpp"

#include <gmock/gmock.h>

#include "PrivateSide/Detection/Navigation/NavigationChangeListener.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

using test::infoLine;
using testing::ElementsAre;
using testing::IsEmpty;
using Event = std::optional<TimelineEvent>;

TimelineEvent change(std::int64_t timestamp, std::vector<SrScreenHierarchyElement> hierarchy,
                     SrScreenChangeType type = SrScreenChangeType::appear,
                     SrScreenChangeDetectionType method = SrScreenChangeDetectionType::manual) {
    ScreenChangeDetails details;
    details.changeType = type;
    details.detectionType = method;
    details.screenHierarchy = std::move(hierarchy);
    return {EventName::screenChange, timestamp, std::move(details)};
}

struct Navigation : testing::Test {
    test::LogCapture capture;
    double now = 1.5;
    std::shared_ptr<NavigationChangePublisher> publisher = std::make_shared<NavigationChangePublisher>();
    NavigationTracker tracker{capture.log(), [this] { return Date(now); }};
    std::vector<Event> heard;
    std::vector<AnyCancellable> tokens;

    void follow(const AnyPublisher<Event>& stream) {
        tokens.push_back(stream.sink([this](const Event& event) { heard.push_back(event); }));
    }
    void record(const std::string& name) {
        tracker.record({{0, name, "Screen"}}, SrScreenChangeType::appear,
                       SrScreenChangeDetectionType::manual);
    }
};

TEST_F(Navigation, ARecordedChangeIsPublishedAtTheCurrentTimeWithItsHierarchy) {
    follow(publisher->screenChangeEvent().dropFirst());
    tracker.startTracking(publisher);
    tracker.record({{0, "Main", "Screen"}, {1, "Cart", "Dialog"}}, SrScreenChangeType::disappear,
                   SrScreenChangeDetectionType::automatic);
    EXPECT_THAT(heard,
                ElementsAre(change(1500, {{0, "Main", "Screen"}, {1, "Cart", "Dialog"}},
                                   SrScreenChangeType::disappear, SrScreenChangeDetectionType::automatic)));
}

TEST_F(Navigation, WithoutAPublisherNothingHappens) {
    follow(publisher->screenChangeEvent().dropFirst());
    record("Cart");
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(Navigation, StopTrackingIsLoggedAndDropsThePublisher) {
    follow(publisher->screenChangeEvent().dropFirst());
    tracker.startTracking(publisher);
    tracker.stopTracking();
    record("Cart");
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(publisher.use_count(), 1);
    capture.expectLines({infoLine(LogTag::navigation, "Stopped tracking Navigation.")});
}

TEST_F(Navigation, ASubscriberMayStopTheTrackingWhileItIsTold) {
    tracker.startTracking(publisher);
    const auto token = publisher->screenChangeEvent().dropFirst().sink([this](const Event& event) {
        heard.push_back(event);
        tracker.stopTracking();
    });
    publisher.reset();
    record("Cart");
    record("Pay");
    EXPECT_THAT(heard, ElementsAre(change(1500, {{0, "Cart", "Screen"}})));
    capture.expectLines({infoLine(LogTag::navigation, "Stopped tracking Navigation.")});
}

TEST_F(Navigation, ThePublisherRemembersNothingBeforeTheFirstChangeAndThenTheLast) {
    tracker.startTracking(publisher);
    follow(publisher->screenChangeEvent());
    record("Cart");
    now = 2;
    record("Pay");
    heard.clear();
    follow(publisher->screenChangeEvent());
    EXPECT_THAT(heard, ElementsAre(change(2000, {{0, "Pay", "Screen"}})));
}

TEST_F(Navigation, TheListenerHasNothingBeforeTheFirstChange) {
    const NavigationChangeListener listener(*publisher);
    follow(listener.detectedEvent());
    EXPECT_THAT(heard, ElementsAre(std::nullopt));
}

TEST_F(Navigation, TheListenerCopiesEveryChangeOnce) {
    tracker.startTracking(publisher);
    const NavigationChangeListener listener(*publisher);
    follow(listener.detectedEvent().dropFirst());
    record("Cart");
    record("Cart");
    EXPECT_THAT(heard,
                ElementsAre(change(1500, {{0, "Cart", "Screen"}}), change(1500, {{0, "Cart", "Screen"}})));
}

TEST_F(Navigation, AListenerThatComesLaterHasTheLastChange) {
    tracker.startTracking(publisher);
    record("Cart");
    const NavigationChangeListener listener(*publisher);
    follow(listener.detectedEvent());
    EXPECT_THAT(heard, ElementsAre(change(1500, {{0, "Cart", "Screen"}})));
}

TEST_F(Navigation, TheListenerMayGoWhileAChangeIsPublished) {
    tracker.startTracking(publisher);
    auto listener = std::make_unique<NavigationChangeListener>(*publisher);
    const auto token = listener->detectedEvent().dropFirst().sink([&](const Event& event) {
        heard.push_back(event);
        listener.reset();
    });
    record("Cart");
    record("Pay");
    EXPECT_THAT(heard, ElementsAre(change(1500, {{0, "Cart", "Screen"}})));
}

}  // namespace
}  // namespace mireth
