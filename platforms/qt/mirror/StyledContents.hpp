// Pictures of scroll bars, sliders and dials, drawn by the style from the numbers they show.
#pragma once

#include <QPalette>
#include <QStyle>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "MirethVex/Platform/Image.hpp"

namespace mireth::qt {

/// The widget itself is not asked to paint: what an app adds to its painting, in a filter for instance, is
/// never in the picture. A picture is kept as long as the numbers stay the same and the widget is seen in
/// every pass. Main thread only.
class StyledContents {
  public:
    /// One pixel a point. Without a bitmap for a style that is not known to draw nothing else, such as one
    /// with a style sheet, which may hold pictures.
    platform::Image of(const QWidget& widget);

    /// Lets go of the pictures that were not asked for since the last call.
    void endPass();

  private:
    struct Kept {
        std::vector<std::int64_t> numbers;
        platform::Image image;
        bool wasSeen = false;
    };

    struct PlainPalette {
        QPalette source;
        QPalette plain;
    };

    bool drawsNothingElse(const QStyle& style);
    /// Always the same one for the same colours: styles keep what they draw in the app's QPixmapCache under
    /// the palette's key, and a new key each time would push the app's own pictures out. Until the next call.
    const QPalette& plain(const QPalette& palette);

    /// Made when one is asked for first.
    std::vector<std::unique_ptr<QStyle>> known_;
    std::vector<PlainPalette> palettes_;
    std::unordered_map<const QWidget*, Kept> kept_;
};

}  // namespace mireth::qt
