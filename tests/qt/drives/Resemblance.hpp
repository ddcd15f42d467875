// Whether a frame of a replay and the screen at that moment go together.
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <cstdint>
#include <vector>

namespace mireth::qttest {

/// The background of windows, darker than any mask; all else that is grey on the screen is lighter or darker.
inline constexpr int windowGrey = 130;

/// What is to be seen at each pixel of a video frame.
class Sketch {
  public:
    enum Kind : std::uint8_t { nothing = 0, text = 1, background = 2, mask = 4 };

    /// Of a frame.
    explicit Sketch(const QImage& frame);
    /// Of a window's picture on the screen, fitted into `area` of a frame. Text and pictures have saturated
    /// colours there. A pixel shows whatever lies where it is or close by.
    Sketch(const QImage& window, const QRect& area);

    /// Anything of this at the place or beside it?
    bool hasBeside(int x, int y, int kinds) const;
    bool hasAt(int x, int y, int kinds) const;
    QSize size() const { return size_; }

  private:
    std::size_t indexOf(int x, int y) const { return static_cast<std::size_t>(y * size_.width() + x); }

    QSize size_;
    std::vector<std::uint8_t> kinds_;
};

/// Both count pixels of the frame.
struct Resemblance {
    /// With text on the screen, and those of them that are neither masked in the frame nor plain background.
    int text = 0;
    int bareText = 0;
    /// Plain background in the frame, and those of them that are that on the screen, too.
    int background = 0;
    int rightBackground = 0;

    /// From 0 to 1.
    double likeness() const { return background == 0 ? 0 : double(rightBackground) / background; }
};

Resemblance compare(const Sketch& frame, const Sketch& screen);

}  // namespace mireth::qttest
