// Draws the text of labels and fields, as a phone's toolkit would.
#pragma once

#include <optional>
#include <string>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth::phone {

struct TextStyle {
    platform::Font font{"Inter", 17};
    Color color{0, 0, 0, 1};
    platform::TextAlignment alignment = platform::TextAlignment::natural;
    /// Points between the view's sides and the text.
    double inset = 0;
    /// False: one line. True: as many as fit. What does not fit ends in an ellipsis.
    bool wraps = true;
    /// False: in the middle of the height.
    bool fromTop = false;
};

/// The room that one line of `text` takes when it is drawn at `scale`, in whole points; the inset is left
/// out.
Size measureLine(const std::string& text, const TextStyle& style, double scale);

/// A picture of `size` points, rounded up to whole pixels, transparent but for the text; without a bitmap
/// when there is nothing to draw. One thread at a time.
platform::Image drawText(const std::string& text, const TextStyle& style, Size size, double scale);

}  // namespace mireth::phone
