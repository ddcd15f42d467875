// The capture timer, its pictures, and its log lines.
#include "RecordedWindow.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Seconds;
using platform::View;
using platform::ViewClass;
using test::errorLine;
using test::infoLine;

constexpr std::uint32_t white = 0xFFFFFFFFU;
constexpr std::uint32_t maskGrey = 0xFFBCBCBCU;
using FrameRecorderTest = test::RecordedWindow;

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

TEST_F(FrameRecorderTest, PicturesOfAScreenThatStandsStillShareTheirBitmap) {
    start();
    mainQueue_->advance(Seconds(1));
    ASSERT_EQ(images_.size(), 2U);
    EXPECT_TRUE(images_[1].isSameBitmap(images_[0]));
    const auto view = std::make_shared<View>();
    view->setFrame({50, 50, 1, 1});
    view->mutableLayer().appearance.backgroundColor = Color{0, 0, 1, 1};
    window_->addSubview(view);
    mainQueue_->advance(Seconds(1));
    ASSERT_EQ(images_.size(), 4U);
    EXPECT_FALSE(images_[2].isSameBitmap(images_[1]));
    EXPECT_EQ(images_[1].pixels()[50 * 100 + 50], white);
    EXPECT_EQ(images_[2].pixels()[50 * 100 + 50], 0xFF0000FFU);
    EXPECT_TRUE(images_[3].isSameBitmap(images_[2]));
    expectStarted();
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

TEST_F(FrameRecorderTest, BlankPictureIsDrawnOnceATick) {
    int drawn = 0;
    makeRecorder([&drawn](platform::GraphicsContext&) { ++drawn; });
    start();
    recorder_->pauseFrameRecording();
    mainQueue_->advance(Seconds(1));
    EXPECT_EQ(images_.size(), 2U);
    EXPECT_EQ(drawn, 2);
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

TEST_F(FrameRecorderTest, TickAfterTheRecorderIsGoneIsLogged) {
    const test::StrayTimer timer;
    auto recorder = std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_, timer.schedule());
    recorder->startFrameRecording({}, {}, [](const Image&) {});
    recorder.reset();
    (*timer.tick)();
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          errorLine(LogTag::playback, "Self is nil in viewImage callback")});
}

TEST_F(FrameRecorderTest, TickWithoutACallbackIsLogged) {
    const test::StrayTimer timer;
    const auto recorder =
        std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_, timer.schedule());
    recorder->startFrameRecording({}, {}, [](const Image&) {});
    recorder->stopFrameRecording();
    (*timer.tick)();
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          infoLine(LogTag::playback, "Frames recorder stopped"),
                          errorLine(LogTag::playback, "Callback is nil in viewImage callback")});
}

TEST_F(FrameRecorderTest, ResumeWithoutACallbackDeliversNoPictureAnyMore) {
    const test::StrayTimer timer;
    recorder_ = std::make_shared<FrameRecorder>(capture_.log(), window_, graphics_, timer.schedule());
    start();
    recorder_->pauseFrameRecording();
    (*timer.tick)();
    ASSERT_EQ(images_.size(), 1U);
    EXPECT_TRUE(lastIsBlank());
    recorder_->stopFrameRecording();
    recorder_->resumePlaybackRecording();
    (*timer.tick)();
    EXPECT_EQ(images_.size(), 1U);
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         infoLine(LogTag::playback, "Frames recorder stopped"),
         errorLine(LogTag::playback, "Callback is nil while trying to resume playback recording"),
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
