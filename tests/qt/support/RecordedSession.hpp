// A session of the whole library in this process, delivered to a real receiver.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "PublicSide/MirethSRCore.hpp"
#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"
#include "qt/support/EventLoop.hpp"
#include "support/LogCapture.hpp"

namespace mireth::qttest {

class RecordedSession : public endtoend::EndToEnd {
  protected:
    platform::LinuxPlatformOptions options() {
        platform::LinuxPlatformOptions options;
        options.information = {{"SR_ENDPOINT_URL", receiver_->origin()},
                               {"KELDA_ENDPOINT_URL", receiver_->origin()},
                               {"CFBundleShortVersionString", "2.3.1"},
                               {"VEX_VERSION", "1.0.0"},
                               {"DEVICE_IDIOM", "phone"}};
        options.cachesDirectory = caches();
        return options;
    }

    void start(const std::shared_ptr<platform::Window>& window, const VexConfiguration& configuration = {}) {
        ASSERT_EQ(core_.initializeProject("b1", "p1", window), InitializationResult::success);
        const auto started = await(core_.startRecording(configuration));
        ASSERT_TRUE(started && started->kind == SessionStartResult::Kind::success);
        session_ = started->info->sessionId;
    }

    void stop() {
        const auto stopped = await(core_.stopRecording());
        ASSERT_TRUE(stopped.has_value());
        EXPECT_EQ(stopped->kind, SessionCloseResult::Kind::success);
    }

    endtoend::Json report() const { return receiver_->show(session_); }

    std::vector<platform::Image> frames() const {
        std::vector<platform::Image> frames;
        const endtoend::Json whole = report();
        for (const endtoend::Json& chunk : whole.at("chunks")) {
            for (auto& frame : endtoend::decodeFrames(chunk.at("path"))) {
                frames.push_back(std::move(frame));
            }
        }
        return frames;
    }

    /// In parts of the frame.
    void expectTapAt(double x, double y) const {
        const endtoend::Json timeline = report().at("timeline");
        const auto tap = std::ranges::find(
            timeline, endtoend::Json("UserInteraction"),
            [](const endtoend::Json& event) { return event.value("type", endtoend::Json()); });
        ASSERT_NE(tap, timeline.end()) << timeline.dump(1);
        const endtoend::Json& target = tap->at("eventDetails").at("target");
        EXPECT_NEAR(target.at("xNormalizedTo1").get<double>(), x, 0.001);
        EXPECT_NEAR(target.at("yNormalizedTo1").get<double>(), y, 0.001);
    }

    /// The pixel of a 250 × 500 frame that shows this point of a 250 × 500 window.
    static endtoend::Rgb at(const platform::Image& frame, std::size_t x, std::size_t y) {
        return endtoend::pixelAt(frame, x, y);
    }

    const std::unique_ptr<endtoend::Receiver> receiver_ = startReceiver();
    test::LogCapture log_{{}};
    const qt::QtPlatform platform_{options()};
    MirethSRCore core_{log_.log(), platform_.services()};
    std::string session_;
};

}  // namespace mireth::qttest
