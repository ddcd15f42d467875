// The recorded session of a driven program, as somebody who watches it compares it with what was on the
// screen.
#pragma once

#include <QImage>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <cstdint>
#include <string>
#include <vector>

#include "endtoend/support/Receiver.hpp"

namespace mireth::qttest {

class Replay {
  public:
    /// `report` is what the receiver says of the session; the window had this size.
    Replay(const endtoend::Json& report, QSize window);

    const std::vector<QImage>& frames() const { return frames_; }
    /// Of the taps, in the window, in order.
    const std::vector<QPointF>& taps() const { return taps_; }
    /// The window's size as it was said last.
    QSize windowSize() const { return said_; }

    /// Those shown about this time, in milliseconds since the epoch.
    std::vector<QImage> framesAbout(std::int64_t time) const;
    /// Where the window is to be in the frame.
    QRect area() const;

  private:
    QPointF edge() const;
    void readTimeline(const endtoend::Json& timeline);

    const QSize window_;
    const double scale_;
    std::vector<QImage> frames_;
    std::vector<QPointF> taps_;
    QSize said_;
    std::int64_t start_ = 0;
};

}  // namespace mireth::qttest
