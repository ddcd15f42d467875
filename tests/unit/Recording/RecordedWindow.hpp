// A window with a label on it, its recorder, and the pictures that are delivered.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "PrivateSide/Recording/FrameRecorder.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/LogCapture.hpp"
#include "tests/support/ManualMainQueue.hpp"

namespace mireth::test {

/// Keeps the tick, as a run loop that fires once more than it should.
struct StrayTimer {
    std::shared_ptr<Work> tick = std::make_shared<Work>();
    FrameRecorder::ScheduleTimer schedule() const {
        return [tick = tick](platform::Seconds, bool, Work work) -> std::unique_ptr<platform::Timer> {
            *tick = std::move(work);
            return nullptr;
        };
    }
};

/// The window is white; the label, at its top left, is red and masked.
class RecordedWindow : public testing::Test {
  protected:
    RecordedWindow() {
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
                                       [this](const platform::Image& image) { images_.push_back(image); });
    }
    void expectStarted() { capture_.expectLines({infoLine(LogTag::playback, "Frames recorder started")}); }

    std::uint32_t lastPixel(std::size_t x, std::size_t y) const {
        const platform::Image& image = images_.back();
        return image.pixels()[y * image.pixelWidth() + x];
    }
    bool lastIsBlank() const {
        return std::ranges::all_of(images_.back().pixels(), [](std::uint32_t p) { return p == 0xFF000000U; });
    }

    LogCapture capture_;
    std::shared_ptr<ManualMainQueue> mainQueue_ = std::make_shared<ManualMainQueue>();
    std::shared_ptr<platform::Graphics> graphics_ = std::make_shared<platform::CairoGraphics>();
    std::shared_ptr<platform::Window> window_ = std::make_shared<platform::Window>(Size{100, 60}, 3);
    std::shared_ptr<platform::Label> label_ = std::make_shared<platform::Label>();
    std::vector<platform::Image> images_;
    std::shared_ptr<FrameRecorder> recorder_;
};

}  // namespace mireth::test
