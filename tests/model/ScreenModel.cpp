#include "model/ScreenModel.hpp"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace mireth::model {

struct ScreenModel::View {
    const View* parent = nullptr;
    std::string viewClass;
    const std::vector<phone::Reaction>* onTap = nullptr;
    std::vector<std::shared_ptr<View>> subviews;

    LayerState look;
    double opacity = 1;
    /// Where an animation shows it.
    std::optional<Rect> animated;

    std::optional<std::string> text;
    std::optional<platform::Font> font;
    platform::TextAlignment alignment = platform::TextAlignment::natural;
    bool firstResponder = false;
    /// What shows the text of a button.
    View* label = nullptr;

    bool showsText() const { return viewClass == "Label" || takesText(); }
    bool takesText() const { return viewClass == "TextField" || viewClass == "TextView"; }
};

namespace {

using View = ScreenModel::View;

Point middleOf(const Rect& frame) {
    return {frame.x + 0.5 * frame.width, frame.y + 0.5 * frame.height};
}

void apply(View& view, const phone::ViewSettings& settings) {
    auto& look = view.look;
    look.frame = settings.frame.value_or(look.frame);
    look.background = settings.background.value_or(look.background);
    if (settings.border) {
        look.borderWidth = *settings.border ? (*settings.border)->width : 0;
        look.borderColor = *settings.border ? std::optional((*settings.border)->color) : std::nullopt;
    }
    look.cornerRadius = settings.cornerRadius.value_or(look.cornerRadius);
    look.hidden = settings.hidden.value_or(look.hidden);
    look.clips = settings.clips.value_or(look.clips);
    view.opacity = settings.opacity.value_or(view.opacity);
    if (settings.animated) {
        view.animated = *settings.animated ? (*settings.animated)->frame : std::nullopt;
    }
    View& bearer = view.label != nullptr ? *view.label : view;
    bearer.text = settings.text.value_or(bearer.text);
    bearer.font = settings.font.value_or(bearer.font);
    bearer.alignment = settings.alignment.value_or(bearer.alignment);
    bearer.firstResponder = settings.firstResponder.value_or(bearer.firstResponder);
}

/// `point` is in the coordinates of the view's parent.
const View* deepestAt(const View& view, Point point) {
    constexpr double invisible = 0.01;
    if (view.look.hidden || view.opacity < invisible) {
        return nullptr;
    }
    const Rect& frame = view.look.frame;
    const Point own{point.x - frame.x, point.y - frame.y};
    const bool isInside = own.x >= 0 && own.x < frame.width && own.y >= 0 && own.y < frame.height;
    if (isInside || !view.look.clips) {
        for (const auto& subview : std::views::reverse(view.subviews)) {
            if (const View* found = deepestAt(*subview, own)) {
                return found;
            }
        }
    }
    return isInside ? &view : nullptr;
}

LayerState layersOf(const View& view) {
    LayerState layer = view.look;
    layer.frame = view.animated.value_or(layer.frame);
    layer.position = middleOf(layer.frame);
    for (const auto& subview : view.subviews) {
        layer.sublayers.push_back(layersOf(*subview));
    }
    return layer;
}

std::string textsOf(const View& view) {
    std::string texts;
    if (view.showsText()) {
        texts = "    Text: " + view.text.value_or("nil") + "|\n    Font: ";
        texts += view.font ? view.font->name + ", " + std::to_string(view.font->pointSize) : "nil";
        texts += "|\n    TextAlignment: " + std::to_string(static_cast<int>(view.alignment));
        if (view.takesText()) {
            texts += std::string("|\n    IsFirstResponder: ") + (view.firstResponder ? "true" : "false");
        }
    }
    for (const auto& subview : view.subviews) {
        texts += textsOf(*subview);
    }
    return texts;
}

/// The class that the phone has by itself and that `viewClass` goes back to.
std::string builtInClass(const phone::Scenario& scenario, std::string viewClass) {
    for (const auto& spec : std::views::reverse(scenario.viewClasses)) {
        viewClass = spec.name == viewClass ? spec.superclass : viewClass;
    }
    return viewClass;
}

bool sameColor(const std::optional<Color>& before, const std::optional<Color>& after, const Rules& rules) {
    if (!before || !after) {
        return before.has_value() == after.has_value();
    }
    return before->red == after->red && before->green == after->green && before->blue == after->blue &&
           (!rules.alphaCounts || before->alpha == after->alpha);
}

bool nearlySame(const Rect& before, const Rect& after, double tolerance) {
    return std::abs(before.x - after.x) < tolerance && std::abs(before.y - after.y) < tolerance &&
           std::abs(before.width - after.width) < tolerance &&
           std::abs(before.height - after.height) < tolerance;
}

bool sameLayers(const LayerState& before, const LayerState& after, const Rules& rules) {
    // What lies where is compared exactly; only the extent of the frame is not.
    const bool isSame =
        sameColor(before.background, after.background, rules) &&
        sameColor(before.borderColor, after.borderColor, rules) && before.borderWidth == after.borderWidth &&
        before.cornerRadius == after.cornerRadius && before.hidden == after.hidden &&
        before.clips == after.clips && nearlySame(before.frame, after.frame, rules.frameTolerance) &&
        (rules.placesMayDiffer || before.position == after.position);
    return isSame && std::ranges::equal(before.sublayers, after.sublayers,
                                        [&rules](const LayerState& one, const LayerState& other) {
                                            return sameLayers(one, other, rules);
                                        });
}

}  // namespace

bool looksTheSame(const Picture& before, const Picture& after, const Rules& rules) {
    return before.texts == after.texts && sameLayers(before.layers, after.layers, rules);
}

ScreenModel::ScreenModel(const phone::Scenario& scenario)
    : scenario_(scenario), window_{0, 0, scenario.windowSize.width, scenario.windowSize.height} {
    for (const auto& spec : scenario.screens) {
        auto root = std::make_shared<View>();
        root->look.frame = window_;
        root->look.background = spec.background;
        for (const auto& view : spec.views) {
            root->subviews.push_back(build(view, root.get()));
        }
        screens_[spec.name] = {spec.name, std::move(root)};
    }
    present(scenario.screens.front().name);
}

std::shared_ptr<View> ScreenModel::build(const phone::ViewSpec& spec, const View* parent) {
    auto view = std::make_shared<View>();
    view->parent = parent;
    view->viewClass = builtInClass(scenario_, spec.viewClass);
    if (view->viewClass == "Button") {
        auto label = std::make_shared<View>();
        label->viewClass = "Label";
        label->parent = view.get();
        view->label = label.get();
        view->subviews.push_back(std::move(label));
    }
    view->onTap = spec.onTap ? &*spec.onTap : nullptr;
    apply(*view, spec.settings);
    for (const auto& subview : spec.subviews) {
        view->subviews.push_back(build(subview, view.get()));
    }
    if (!spec.id.empty()) {
        views_[spec.id] = view.get();
    }
    return view;
}

void ScreenModel::present(const std::string& screen) {
    current_ = &screens_.at(screen);
}

void ScreenModel::set(const std::string& id, const phone::ViewSettings& settings) {
    apply(*views_.at(id), settings);
}

const View* ScreenModel::viewAt(Point point) const {
    return deepestAt(*current_->root, point);
}

const std::vector<phone::Reaction>* ScreenModel::reactionsOf(const View* view) {
    for (; view != nullptr; view = view->parent) {
        if (view->onTap != nullptr) {
            return view->onTap;
        }
    }
    return nullptr;
}

Picture ScreenModel::picture() const {
    LayerState window;
    window.frame = window_;
    window.sublayers.push_back(layersOf(*current_->root));
    return {std::move(window), textsOf(*current_->root)};
}

}  // namespace mireth::model
