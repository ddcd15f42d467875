// What a touch costs for as long as it goes on.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"
#include "support/LogCapture.hpp"
#include "support/ScarceMemory.hpp"

namespace mireth {
namespace {

TEST(RecogniserMemory, AFingerThatNeverStopsMovingNeedsNoMoreOfIt) {
    test::LogCapture capture{{}};
    const auto observer = std::make_shared<GestureRecognizerObserver>();
    const MirethGestureRecognizer recognizer(capture.log(), observer);
    std::vector<std::string> gestures;
    const AnyCancellable subscription = recognizer.recognizedGestures().sink(
        [&](const GestureEvent& gesture) { gestures.emplace_back(gesture.key()); });
    const std::vector<platform::Touch> touches{platform::Touch{}};
    observer->touchesBegan(touches, {});
    testing::internal::CaptureStderr();
    {
        const test::ScarceMemory scarce(1024);
        for (int i = 0; i < 1000; ++i) {
            EXPECT_NO_THROW(observer->touchesMoved(touches, {}));
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    observer->touchesEnded(touches, {});
    EXPECT_THAT(gestures, testing::ElementsAre("Undefined"));
}

}  // namespace
}  // namespace mireth
