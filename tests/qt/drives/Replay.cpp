#include "qt/drives/Replay.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "endtoend/support/Video.hpp"

namespace mireth::qttest {

using endtoend::Json;

namespace {

constexpr QSize frameSize(250, 500);

QImage pictureOf(const platform::Image& frame) {
    QImage picture(static_cast<int>(frame.pixelWidth()), static_cast<int>(frame.pixelHeight()),
                   QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        std::copy_n(frame.pixels().data() + static_cast<std::size_t>(y) * frame.pixelWidth(),
                    frame.pixelWidth(), reinterpret_cast<std::uint32_t*>(picture.scanLine(y)));
    }
    return picture;
}

}  // namespace

Replay::Replay(const Json& report, QSize window)
    : window_(window),
      scale_(std::min(double(frameSize.width()) / window.width(),
                      double(frameSize.height()) / window.height())) {
    for (const Json& chunk : report.at("chunks")) {
        for (const auto& frame : endtoend::decodeFrames(chunk.at("path"))) {
            frames_.push_back(pictureOf(frame));
        }
    }
    readTimeline(report.at("timeline"));
}

void Replay::readTimeline(const Json& timeline) {
    for (const Json& event : timeline) {
        const std::string type = event.at("type");
        if (type == "SessionStartMarker") {
            start_ = event.at("timestamp");
        } else if (type == "WindowDimensions") {
            const Json& details = event.at("eventDetails");
            said_ = {details.at("windowWidthPx"), details.at("windowHeightPx")};
        } else if (type == "UserInteraction") {
            const Json& target = event.at("eventDetails").at("target");
            const QPointF inFrame(target.at("xNormalizedTo1").get<double>() * frameSize.width(),
                                  target.at("yNormalizedTo1").get<double>() * frameSize.height());
            taps_.push_back((inFrame - edge()) / scale_);
        }
    }
}

std::vector<QImage> Replay::framesAbout(std::int64_t time) const {
    constexpr std::int64_t period = 500;
    constexpr std::int64_t about = 1200;
    std::vector<QImage> found;
    for (std::size_t index = 0; index < frames_.size(); ++index) {
        const auto shown = start_ + static_cast<std::int64_t>(index + 1) * period;
        if (std::abs(shown - time) <= about) {
            found.push_back(frames_[index]);
        }
    }
    return found;
}

QRect Replay::area() const {
    return QRectF(edge(), QSizeF(window_) * scale_).toRect();
}

QPointF Replay::edge() const {
    return {(frameSize.width() - window_.width() * scale_) / 2,
            (frameSize.height() - window_.height() * scale_) / 2};
}

}  // namespace mireth::qttest
