// The capture timer, its pictures, and its log lines.
#include "PrivateSide/Recording/FrameRecorder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <stdexcept>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/LogCapture.hpp"
#include "tests/support/ManualMainQueue.hpp"
#include "tests/support/RecordingGraphics.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Seconds;
using platform::View;
using platform::ViewClass;
using test::errorLine;
using test::infoLine;

constexpr std::uint32_t black = 0xFF000000U;
constexpr std::uint32_t white = 0xFFFFFFFFU;
constexpr std::uint32_t maskGrey = 0xFFBCBCBCU;

/// Throws whatever it is told when its layer is asked for.
class Breakable final : public View {
  public:
    const platform::Layer& layer() const override {
        if (fail) {
            fail();
        }
        return View::layer();
    }
    std::function<void()> fail;
};

class FrameRecorderTest : public ::testing::Test {
  protected:
    FrameRecorderTest() {
        window_->mutableLayer().appearance.backgroundColor = Color{1, 1, 1, 1};
        label_->setFrame({0, 0, 20, 20});
        label_->mutableLayer().appearance.backgroundColor = Color{1, 0, 0, 1};
        window_->addSubview(label_);
    }

    void makeRecorder(FrameRecorder::BlackImageRenderAction blackAction = {}) {
        recorder_ =
            std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_,
                                            FrameRecorder::scheduleOn(mainQueue_), std::move(blackAction));
    }
    void start(VexConfiguration configuration = {}, PlaybackConfiguration playback = {}) {
        if (recorder_ == nullptr) {
            makeRecorder();
        }
        recorder_->startFrameRecording(playback, configuration,
                                       [this](const Image& image) { images_.push_back(image); });
    }
    void expectStarted() { capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started")}); }

    std::uint32_t lastPixel(std::size_t x, std::size_t y) const {
        const Image& image = images_.back();
        return image.pixels()[y * image.pixelWidth() + x];
    }
    bool lastIsBlank() const {
        return std::ranges::all_of(images_.back().pixels(), [](std::uint32_t p) { return p == black; });
    }

    test::LogCapture capture_;
    std::shared_ptr<test::ManualMainQueue> mainQueue_ = std::make_shared<test::ManualMainQueue>();
    std::shared_ptr<platform::Graphics> graphics_ = std::make_shared<platform::CairoGraphics>();
    std::shared_ptr<platform::Window> window_ = std::make_shared<platform::Window>(Size{100, 60}, 3);
    std::shared_ptr<platform::Label> label_ = std::make_shared<platform::Label>();
    std::vector<Image> images_;
    std::shared_ptr<FrameRecorder> recorder_;
};

TEST_F(FrameRecorderTest, TwoFramesASecondAreHalfASecondApart) {
    start();
    mainQueue_->advance(Seconds(0.49));
    EXPECT_EQ(images_.size(), 0U);
    mainQueue_->advance(Seconds(0.02));
    EXPECT_EQ(images_.size(), 1U);
    mainQueue_->advance(Seconds(2));
    EXPECT_EQ(images_.size(), 5U);
    expectStarted();
}

TEST_F(FrameRecorderTest, FourFramesASecondAreAQuarterApart) {
    PlaybackConfiguration playback;
    playback.fps = 4;
    start({}, playback);
    mainQueue_->advance(Seconds(0.25));
    EXPECT_EQ(images_.size(), 1U);
    mainQueue_->advance(Seconds(0.75));
    EXPECT_EQ(images_.size(), 4U);
    expectStarted();
}

TEST_F(FrameRecorderTest, TheTimerIsAskedToRepeat) {
    std::vector<std::pair<double, bool>> asked;
    const auto recorder = std::make_shared<FrameRecorder>(
        capture_.log(), window_, graphics_,
        [&asked](Seconds interval, bool repeats, Work) -> std::unique_ptr<platform::Timer> {
            asked.emplace_back(interval.count(), repeats);
            return nullptr;
        });
    recorder->startFrameRecording({}, {}, [](const Image&) {});
    EXPECT_EQ(asked, (std::vector<std::pair<double, bool>>{{0.5, true}}));
    expectStarted();
}

TEST_F(FrameRecorderTest, TimerThatDoesNotRepeatRunsOnce) {
    int ticks = 0;
    const auto timer = FrameRecorder::scheduleOn(mainQueue_)(Seconds(1), false, [&ticks] { ++ticks; });
    EXPECT_EQ(timer, nullptr);
    mainQueue_->advance(Seconds(5));
    EXPECT_EQ(ticks, 1);
}

TEST_F(FrameRecorderTest, PictureShowsTheWindowWithMasks) {
    start();
    mainQueue_->advance(Seconds(0.5));
    ASSERT_EQ(images_.size(), 1U);
    EXPECT_EQ(images_[0].size(), (Size{100, 60})) << "one pixel a point";
    EXPECT_EQ(lastPixel(10, 10), maskGrey);
    EXPECT_EQ(lastPixel(50, 50), white);
    expectStarted();
}

TEST_F(FrameRecorderTest, DisabledMaskingIsLoggedAndShowsEverything) {
    VexConfiguration configuration;
    configuration.disableMasking = true;
    start(configuration);
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          infoLine(LogTag::playback, "Masking is disabled")});
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(lastPixel(10, 10), 0xFFFF0000U);
}

TEST_F(FrameRecorderTest, NamedClassesAreMaskedInThatSessionOnly) {
    const ViewClass& secret = ViewClass::registerClass("FrameRecorderSecret", &ViewClass::view());
    const auto view = std::make_shared<View>(secret);
    view->setFrame({40, 40, 20, 20});
    window_->addSubview(view);
    VexConfiguration configuration;
    configuration.additionalViewTypesToMask = {&secret};
    start(configuration);
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(lastPixel(50, 50), maskGrey);
    recorder_->stopFrameRecording();
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(lastPixel(50, 50), white);
    capture_.take();
}

TEST_F(FrameRecorderTest, StopEndsPicturesAndDropsTheCallback) {
    start();
    mainQueue_->advance(Seconds(0.5));
    recorder_->stopFrameRecording();
    mainQueue_->advance(Seconds(5));
    EXPECT_EQ(images_.size(), 1U);
    recorder_->resumePlaybackRecording();
    mainQueue_->advance(Seconds(5));
    EXPECT_EQ(images_.size(), 1U);
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         infoLine(LogTag::playback, "Frames recorder stopped"),
         errorLine(LogTag::playback, "Callback is nil while trying to resume playback recording")});
}

TEST_F(FrameRecorderTest, PausedPicturesAreBlankUntilResumed) {
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_FALSE(lastIsBlank());
    recorder_->pauseFrameRecording();
    for (int i = 0; i < 3; ++i) {
        mainQueue_->advance(Seconds(0.5));
        EXPECT_TRUE(lastIsBlank());
        EXPECT_EQ(images_.back().size(), (Size{100, 60}));
    }
    EXPECT_EQ(images_.size(), 4U) << "the timer keeps running";
    recorder_->resumePlaybackRecording();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_FALSE(lastIsBlank());
    expectStarted();
}

TEST_F(FrameRecorderTest, ResumeWithoutACallbackLeavesPicturesBlank) {
    makeRecorder();
    recorder_->pauseFrameRecording();
    recorder_->resumePlaybackRecording();
    capture_.expectLines(
        {errorLine(LogTag::playback, "Callback is nil while trying to resume playback recording")});
}

TEST_F(FrameRecorderTest, StartEndsAnEarlierPause) {
    start();
    recorder_->pauseFrameRecording();
    recorder_->stopFrameRecording();
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_FALSE(lastIsBlank());
    capture_.take();
}

TEST_F(FrameRecorderTest, BlankPictureIsDrawnByItsAction) {
    makeRecorder([](platform::GraphicsContext& context) {
        context.fillRoundedRect({0, 0, 100, 60}, {}, Color{0, 0, 1, 1});
    });
    start();
    recorder_->pauseFrameRecording();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(lastPixel(10, 10), 0xFF0000FFU);
    expectStarted();
}

TEST_F(FrameRecorderTest, StartingTwiceKeepsOneTimer) {
    start();
    start();
    mainQueue_->advance(Seconds(1));
    EXPECT_EQ(images_.size(), 2U);
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          infoLine(LogTag::playback, "Frames recorder started")});
}

/// Keeps the tick, as a run loop that fires once more than it should.
struct StrayTimer {
    std::shared_ptr<Work> tick = std::make_shared<Work>();
    FrameRecorder::ScheduleTimer schedule() const {
        return [tick = tick](Seconds, bool, Work work) -> std::unique_ptr<platform::Timer> {
            *tick = std::move(work);
            return nullptr;
        };
    }
};

TEST_F(FrameRecorderTest, TickAfterTheRecorderIsGoneIsLogged) {
    const StrayTimer timer;
    auto recorder = std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_, timer.schedule());
    recorder->startFrameRecording({}, {}, [](const Image&) {});
    recorder.reset();
    (*timer.tick)();
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          errorLine(LogTag::playback, "Self is nil in viewImage callback")});
}

TEST_F(FrameRecorderTest, TickWithoutACallbackIsLogged) {
    const StrayTimer timer;
    const auto recorder =
        std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_, timer.schedule());
    recorder->startFrameRecording({}, {}, [](const Image&) {});
    recorder->stopFrameRecording();
    (*timer.tick)();
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          infoLine(LogTag::playback, "Frames recorder stopped"),
                          errorLine(LogTag::playback, "Callback is nil in viewImage callback")});
}

TEST_F(FrameRecorderTest, DroppingTheRecorderEndsItsTimer) {
    start();
    recorder_.reset();
    mainQueue_->advance(Seconds(5));
    EXPECT_TRUE(images_.empty());
    expectStarted();
}

TEST_F(FrameRecorderTest, CallbackMayStopOrDropTheRecorder) {
    makeRecorder();
    int calls = 0;
    const std::string owned = "captured by the callback";
    recorder_->startFrameRecording({}, {}, [this, &calls, owned](const Image&) {
        recorder_->stopFrameRecording();
        recorder_.reset();
        calls += owned.empty() ? 0 : 1;
    });
    mainQueue_->advance(Seconds(5));
    EXPECT_EQ(calls, 1);
    capture_.take();
}

TEST_F(FrameRecorderTest, PictureFollowsTheWindowsSize) {
    start();
    mainQueue_->advance(Seconds(0.5));
    window_->resize({60, 100});
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(images_[0].size(), (Size{100, 60}));
    EXPECT_EQ(images_[1].size(), (Size{60, 100}));
    recorder_->pauseFrameRecording();
    window_->resize({100, 60});
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(images_[2].size(), (Size{100, 60}));
    expectStarted();
}

TEST_F(FrameRecorderTest, CopyLetsGoOfPicturesRightAfterDrawing) {
    const auto view = std::make_shared<View>();
    view->setFrame({50, 0, 10, 10});
    auto mask = std::make_shared<platform::Layer>();
    view->mutableLayer().appearance.mask = mask;
    window_->addSubview(view);
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_EQ(mask.use_count(), 2) << "the test and the view";
    expectStarted();
}

TEST_F(FrameRecorderTest, WhatCannotBeMaskedIsABlankFrame) {
    const std::vector<std::function<void()>> failures{
        [] { throw std::runtime_error("widget is gone"); },
        [] { throw std::bad_alloc(); },
        [] { throw 42; },
    };
    const auto breakable = std::make_shared<Breakable>();
    window_->addSubview(breakable);
    for (const auto& failure : failures) {
        start();
        breakable->fail = failure;
        mainQueue_->advance(Seconds(0.5));
        EXPECT_TRUE(lastIsBlank());
        breakable->fail = nullptr;
        mainQueue_->advance(Seconds(0.5));
        EXPECT_FALSE(lastIsBlank()) << "the next frame is a new attempt";
        recorder_->stopFrameRecording();
    }
    const auto lines = capture_.take();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[1], errorLine(LogTag::playback,
                                  R"(Failed to render the frame ["errorDetails": "widget is gone"])"));
}

TEST_F(FrameRecorderTest, FailedRenderingIsLoggedOnceARecording) {
    const auto breakable = std::make_shared<Breakable>();
    breakable->fail = [] { throw std::runtime_error("gone"); };
    window_->addSubview(breakable);
    start();
    mainQueue_->advance(Seconds(2));
    EXPECT_EQ(images_.size(), 4U);
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         errorLine(LogTag::playback, R"(Failed to render the frame ["errorDetails": "gone"])")});
}

TEST_F(FrameRecorderTest, FailingRendererGivesABlankFrame) {
    const auto recording = std::make_shared<test::RecordingGraphics>();
    graphics_ = recording;
    recording->failures = 1;
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_TRUE(lastIsBlank());
    EXPECT_TRUE(recording->log.empty());
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         errorLine(LogTag::playback,
                   R"(Failed to render the frame ["errorDetails": "no memory for the surface"])")});
}

TEST_F(FrameRecorderTest, PictureThatAnErrorCutShortIsBlank) {
    const auto recording = std::make_shared<test::RecordingGraphics>();
    graphics_ = recording;
    recording->contextsAreValid = false;
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_TRUE(lastIsBlank());
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         errorLine(
             LogTag::playback,
             R"(Failed to render the frame ["errorDetails": "The picture could not be drawn to its end."])")});
}

TEST_F(FrameRecorderTest, WindowThatNeverHadASizeGivesNoPictures) {
    window_->resize({0, 0});
    start();
    mainQueue_->advance(Seconds(0.5));
    EXPECT_TRUE(images_.empty());
    capture_.take();
}

TEST_F(FrameRecorderTest, WindowThatLosesItsSizeGivesBlankPicturesOfTheSizeBefore) {
    start();
    mainQueue_->advance(Seconds(0.5));
    window_->resize({0, 0});
    mainQueue_->advance(Seconds(0.5));
    ASSERT_EQ(images_.size(), 2U);
    ASSERT_TRUE(images_[1].hasBitmap());
    EXPECT_EQ(images_[1].size(), images_[0].size());
    for (const std::uint32_t pixel : images_[1].pixels()) {
        ASSERT_EQ(pixel, 0xFF000000U);
    }
    capture_.take();
}

TEST_F(FrameRecorderTest, TellsOfItsLife) {
    test::LogCapture memory({LogTag::memoryUse});
    {
        const FrameRecorder recorder(memory.log(), window_, graphics_, FrameRecorder::scheduleOn(mainQueue_));
        memory.expectLines({infoLine(LogTag::memoryUse, "FrameRecorder: Succesfully initialized")});
    }
    memory.expectLines({infoLine(LogTag::memoryUse, "FrameRecorder: Succesfully deinitialized")});
}

}  // namespace
}  // namespace mireth
