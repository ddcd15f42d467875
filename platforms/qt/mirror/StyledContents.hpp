// Pictures of scroll bars, sliders and dials, drawn by the style from the numbers they show.
#pragma once

#include <QSize>
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

    bool drawsNothingElse(const QStyle& style);

    /// Made when one is asked for first.
    std::vector<std::unique_ptr<QStyle>> known_;
    std::unordered_map<const QWidget*, Kept> kept_;
};

}  // namespace mireth::qt
