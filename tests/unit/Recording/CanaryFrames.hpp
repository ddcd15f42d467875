// Screens whose private parts glow in a canary colour, and the frames that are drawn of them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "MirethVex/Platform/ViewController.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "PrivateSide/Recording/FrameRecorder.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"
#include "tests/support/LogCapture.hpp"
#include "tests/support/ManualMainQueue.hpp"

namespace mireth::test {

inline constexpr Color canary{1, 0, 1, 1};
/// The colour of mask blocks.
inline constexpr std::uint32_t maskGrey = 0xFFBCBCBCU;

/// Anything with a touch of magenta: the rest of the screens is grey and green.
inline bool isCanary(std::uint32_t pixel) {
    const auto red = static_cast<int>(pixel >> 16U & 0xFFU);
    const auto green = static_cast<int>(pixel >> 8U & 0xFFU);
    const auto blue = static_cast<int>(pixel & 0xFFU);
    return std::min(red, blue) > green + 2;
}

inline std::ptrdiff_t canaryPixels(const platform::Image& image) {
    return std::ranges::count_if(image.pixels(), isCanary);
}

inline void paint(platform::Layer& layer) {
    layer.appearance.backgroundColor = canary;
    layer.appearance.borderColor = canary;
    layer.appearance.borderWidth = 3;
    layer.appearance.shadowColor = canary;
    layer.appearance.shadowOpacity = 1;
    layer.content.contents = platform::Image::filled(4, 4, 0xFFFF00FFU);
}

class HostingController final : public platform::ViewController,
                                public platform::AnyUIHostingViewController {};

/// Records a window, frame by frame.
class CanaryFrames : public testing::Test {
  protected:
    /// The next frame of a recording of `window` by itself.
    platform::Image capture(const std::shared_ptr<platform::View>& window, bool disableMasking = false,
                            std::vector<const platform::ViewClass*> additionalViewTypesToMask = {}) {
        start(window, disableMasking, std::move(additionalViewTypesToMask));
        return nextFrame();
    }

    void start(const std::shared_ptr<platform::View>& window, bool disableMasking = false,
               std::vector<const platform::ViewClass*> additionalViewTypesToMask = {}) {
        recorder_ =
            std::make_shared<FrameRecorder>(log_.log(), window, std::make_shared<platform::CairoGraphics>(),
                                            FrameRecorder::scheduleOn(mainQueue_));
        VexConfiguration configuration;
        configuration.disableMasking = disableMasking;
        configuration.additionalViewTypesToMask = std::move(additionalViewTypesToMask);
        recorder_->startFrameRecording({}, configuration,
                                       [this](const platform::Image& image) { frame_ = image; });
    }
    platform::Image nextFrame() {
        mainQueue_->advance(platform::Seconds(0.5));
        return std::exchange(frame_, {});
    }

  private:
    LogCapture log_{{}};
    const std::shared_ptr<ManualMainQueue> mainQueue_ = std::make_shared<ManualMainQueue>();
    std::shared_ptr<FrameRecorder> recorder_;
    platform::Image frame_;
};

}  // namespace mireth::test
