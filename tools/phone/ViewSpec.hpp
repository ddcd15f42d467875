// A view as the scenario file describes it. Readers make these, the view tree is built from them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

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

struct ControllerSpec {
    std::string name;
    bool declarative = false;
};

struct ViewSpec {
    /// Its place in the file.
    std::string path;
    /// Empty when it has none.
    std::string id;
    std::string viewClass = "View";
    ViewSettings settings;
    std::optional<ControllerSpec> controller;
    /// Back to front.
    std::vector<ViewSpec> subviews;
};

struct ScreenSpec {
    std::string path;
    std::string name;
    Color background{1, 1, 1, 1};
    std::vector<ViewSpec> views;
};

}  // namespace mireth::phone
