// What the scripted phone shows: screens of views, what is under a finger, and what counts as a change.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/Rules.hpp"
#include "phone/Scenario.hpp"

namespace mireth::model {

/// One layer of the window at one instant, as far as a change of it counts.
struct LayerState {
    Rect frame;
    /// Of its middle, in points.
    Point position;
    std::optional<Color> background;
    std::optional<Color> borderColor;
    double borderWidth = 0;
    double cornerRadius = 0;
    bool hidden = false;
    bool clips = false;
    std::vector<LayerState> sublayers;
};

/// The window at one instant.
struct Picture {
    LayerState layers;
    std::string texts;
};

/// True when a user would see no reaction: the texts are the same, and so are the layers but for the alpha of
/// their colours and for frames that differ by less than the tolerance.
bool looksTheSame(const Picture& before, const Picture& after, const Rules& rules);

class ScreenModel {
  public:
    /// `scenario` outlives it.
    explicit ScreenModel(const phone::Scenario& scenario);

    const std::string& presented() const { return current_->name; }
    void present(const std::string& screen);
    void set(const std::string& id, const phone::ViewSettings& settings);

    struct View;
    /// The deepest view at a point of the window, of several the front one; null when there is none.
    const View* viewAt(Point point) const;
    /// Those of the view, else of its nearest superview that has some; null when there are none.
    static const std::vector<phone::Reaction>* reactionsOf(const View* view);

    Picture picture() const;

  private:
    struct Screen {
        std::string name;
        std::shared_ptr<View> root;
    };
    std::shared_ptr<View> build(const phone::ViewSpec& spec, const View* parent);

    const phone::Scenario& scenario_;
    const Rect window_;
    std::map<std::string, Screen> screens_;
    std::map<std::string, View*> views_;
    const Screen* current_ = nullptr;
};

}  // namespace mireth::model
