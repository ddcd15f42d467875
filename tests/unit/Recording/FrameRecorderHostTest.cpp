// Windows and views that throw while they are captured, or call back into the recorder.
#include <new>
#include <stdexcept>

#include "RecordedWindow.hpp"
#include "tests/support/RecordingGraphics.hpp"

namespace mireth {
namespace {

using platform::Image;
using platform::Seconds;
using platform::View;
using test::errorLine;
using test::infoLine;

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

/// Does what it is told when its subviews are asked for.
class Meddling final : public View {
  public:
    const std::vector<std::shared_ptr<View>>& subviews() const override {
        if (const auto action = std::exchange(meddle, nullptr)) {
            action();
        }
        return View::subviews();
    }
    mutable std::function<void()> meddle;
};

class FrameRecorderHostTest : public test::RecordedWindow {
  protected:
    std::shared_ptr<Meddling> addMeddling() {
        auto view = std::make_shared<Meddling>();
        window_->addSubview(view);
        return view;
    }
    void tick() { mainQueue_->advance(Seconds(0.5)); }
};

TEST_F(FrameRecorderHostTest, WhatCannotBeMaskedIsABlankFrame) {
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

TEST_F(FrameRecorderHostTest, FailedRenderingIsLoggedOnceARecording) {
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

TEST_F(FrameRecorderHostTest, FailingRendererGivesABlankFrame) {
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

TEST_F(FrameRecorderHostTest, PictureThatAnErrorCutShortIsBlank) {
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

/// A window whose own frame cannot be had while it is broken.
class BrokenWindow final : public View {
  public:
    BrokenWindow() { setFrame({0, 0, 100, 60}); }
    const platform::Layer& layer() const override {
        if (isBroken) {
            throw std::runtime_error("window is gone");
        }
        return View::layer();
    }
    bool isBroken = false;
};

TEST_F(FrameRecorderHostTest, WindowThatThrowsGivesBlankPicturesWhetherMaskedOrPaused) {
    const auto window = std::make_shared<BrokenWindow>();
    window->mutableLayer().appearance.backgroundColor = Color{1, 1, 1, 1};
    recorder_ = std::make_shared<FrameRecorder>(capture_.log(), window, graphics_,
                                                FrameRecorder::scheduleOn(mainQueue_));
    start();
    tick();
    window->isBroken = true;
    tick();
    recorder_->pauseFrameRecording();
    tick();
    ASSERT_EQ(images_.size(), 3U) << "the video goes on";
    EXPECT_EQ(images_[0].pixels()[0], 0xFFFFFFFFU);
    for (const Image& image : {images_[1], images_[2]}) {
        EXPECT_EQ(image.size(), (Size{100, 60}));
        EXPECT_TRUE(std::ranges::all_of(image.pixels(), [](std::uint32_t p) { return p == 0xFF000000U; }));
    }
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         errorLine(LogTag::playback, R"(Failed to render the frame ["errorDetails": "window is gone"])")});
}

TEST_F(FrameRecorderHostTest, WindowThatThrowsFromTheBeginningGivesNoPictureUntilItStops) {
    const auto window = std::make_shared<BrokenWindow>();
    recorder_ = std::make_shared<FrameRecorder>(capture_.log(), window, graphics_,
                                                FrameRecorder::scheduleOn(mainQueue_));
    window->isBroken = true;
    start();
    recorder_->pauseFrameRecording();
    tick();
    EXPECT_TRUE(images_.empty());
    window->isBroken = false;
    tick();
    EXPECT_EQ(images_.size(), 1U);
    capture_.expectLines(
        {infoLine(LogTag::playback, "Frames recorder started"),
         errorLine(LogTag::playback, R"(Failed to render the frame ["errorDetails": "window is gone"])")});
}

TEST_F(FrameRecorderHostTest, ViewThatPausesWhileItIsCapturedIsNotShown) {
    const auto view = addMeddling();
    start();
    view->meddle = [this] { recorder_->pauseFrameRecording(); };
    tick();
    ASSERT_EQ(images_.size(), 1U) << "the video goes on";
    EXPECT_TRUE(lastIsBlank());
    expectStarted();
}

TEST_F(FrameRecorderHostTest, ViewThatPausesAndResumesWhileItIsCapturedIsShown) {
    const auto view = addMeddling();
    start();
    view->meddle = [this] {
        recorder_->pauseFrameRecording();
        recorder_->resumePlaybackRecording();
    };
    tick();
    ASSERT_EQ(images_.size(), 1U);
    EXPECT_FALSE(lastIsBlank());
    expectStarted();
}

TEST_F(FrameRecorderHostTest, ViewThatStopsWhileItIsCapturedIsNotDelivered) {
    const auto view = addMeddling();
    start();
    view->meddle = [this] { recorder_->stopFrameRecording(); };
    tick();
    tick();
    EXPECT_TRUE(images_.empty());
    capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started"),
                          infoLine(LogTag::playback, "Frames recorder stopped")});
}

TEST_F(FrameRecorderHostTest, ViewThatDropsTheRecorderWhileItIsCapturedDoesNoHarm) {
    const auto view = addMeddling();
    start();
    view->meddle = [this] {
        recorder_->stopFrameRecording();
        recorder_.reset();
    };
    tick();
    EXPECT_TRUE(images_.empty());
    capture_.take();
}

TEST_F(FrameRecorderHostTest, ViewThatStartsAnotherRecordingWhileItIsCapturedIsMaskedInThat) {
    const auto view = addMeddling();
    VexConfiguration unmasked;
    unmasked.disableMasking = true;
    start(unmasked);
    view->meddle = [this] {
        recorder_->stopFrameRecording();
        start();
    };
    tick();
    tick();
    ASSERT_FALSE(images_.empty());
    for (const Image& image : images_) {
        EXPECT_NE(image.pixels()[0], 0xFFFF0000U) << "the label";
    }
    capture_.take();
}

TEST_F(FrameRecorderHostTest, LogListenerThatPausesOrStopsWhileAPictureFails) {
    const auto breakable = std::make_shared<Breakable>();
    breakable->fail = [] { throw std::runtime_error("gone"); };
    window_->addSubview(breakable);
    std::function<void()> react;
    capture_.log().addLogListener([&react](LogTag, LogLevel level, const std::string&) {
        if (level == LogLevel::error) {
            react();
        }
    });
    start();
    react = [&] {
        breakable->fail = nullptr;
        recorder_->pauseFrameRecording();
    };
    tick();
    tick();
    ASSERT_EQ(images_.size(), 2U);
    EXPECT_TRUE(lastIsBlank());
    start();
    breakable->fail = [] { throw std::runtime_error("gone"); };
    react = [this] { recorder_->stopFrameRecording(); };
    tick();
    EXPECT_EQ(images_.size(), 2U);
    capture_.take();
}

}  // namespace
}  // namespace mireth
