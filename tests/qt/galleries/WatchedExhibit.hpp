// A window that is recorded by the whole library while something is done to it, in no time, down to the video
// that arrives at the service.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>
#include <string>
#include <vector>

#include "qt/support/Pictures.hpp"
#include "support/SessionHost.hpp"
#include "tests/contract/media/DecodedVideo.hpp"

namespace mireth::qttest {

class WatchedExhibit {
  public:
    /// Without a video only the frames are looked at of which it would be made.
    explicit WatchedExhibit(const std::shared_ptr<platform::Window>& window, bool withVideo = true)
        : window_(window) {
        if (withVideo) {
            host_ = std::make_unique<test::SessionHost>();
            host_->window = window;
            host_->startSession();
        }
    }

    /// Looks at what is recorded now, and again when Qt has done what it had to do.
    void look(const std::string& state) {
        record(state);
        QCoreApplication::processEvents();
        record(state + ", later");
    }

    /// Ends the recording. Of no effect without a video.
    void expectNoCanaryInTheVideo() {
        if (host_ == nullptr) {
            return;
        }
        EXPECT_EQ(host_->stop().kind, SessionCloseResult::Kind::success);
        std::size_t seen = 0;
        for (const auto& chunk : host_->service.chunks) {
            for (const auto& frame : tests::decodeVideo(chunk.video).frames) {
                ASSERT_LT(seen, states_.size());
                EXPECT_EQ(findCanary(pictureOf(frame)), std::nullopt) << states_[seen];
                ++seen;
            }
        }
        EXPECT_EQ(seen, states_.size());
    }

  private:
    void record(const std::string& state) {
        const QImage picture = recordedPicture(*window_);
        EXPECT_EQ(findCanary(picture), std::nullopt) << state;
        // A frame like the one before would only take time.
        if (host_ != nullptr && picture != last_) {
            host_->advance(0.5);
            states_.push_back(state);
            last_ = picture;
        }
    }

    const std::shared_ptr<platform::Window> window_;
    std::unique_ptr<test::SessionHost> host_;
    QImage last_;
    std::vector<std::string> states_;
};

}  // namespace mireth::qttest
