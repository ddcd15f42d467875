// How a view looks and what it shows, as a scenario says it at first and may say it again later.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth::phone {

struct Border {
    double width = 1;
    Color color;
};

/// A PNG file, as a path that can be opened, or a plain colour.
using ImageSource = std::variant<std::filesystem::path, Color>;

/// What the presentation layer shows otherwise than the model.
struct Animation {
    std::optional<Rect> frame;
    std::optional<double> opacity;
};

/// Nothing: leave it. A nothing inside: take it away.
template <class T>
using Clearable = std::optional<std::optional<T>>;

/// The keys of a view that can also be set later. Absent ones stay as they are.
struct ViewSettings {
    std::optional<Rect> frame;
    Clearable<Color> background;
    /// Of the text, or the tint of an image.
    Clearable<Color> color;
    Clearable<Border> border;
    std::optional<double> cornerRadius;
    std::optional<double> opacity;
    std::optional<bool> hidden;
    std::optional<bool> clips;

    Clearable<std::string> text;
    Clearable<platform::Font> font;
    std::optional<platform::TextAlignment> alignment;
    std::optional<bool> firstResponder;

    Clearable<ImageSource> image;
    Clearable<Animation> animated;
};

}  // namespace mireth::phone
