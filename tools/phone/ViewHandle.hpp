// A view of the running phone and how it takes on the settings of the scenario.
#pragma once

#include <memory>
#include <string_view>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Platform/View.hpp"
#include "phone/ImageStore.hpp"
#include "phone/TextDrawing.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

/// The kinds of view that the phone draws differently.
enum class ViewKind { plain, label, textField, textView, image, button };

/// That of the nearest superclass the phone knows.
ViewKind kindOf(const platform::ViewClass& viewClass);
/// A Button is a View with a Label inside; the class is registered at the first call.
const platform::ViewClass& buttonClass();

/// Main thread only.
class ViewHandle {
  public:
    /// `images` outlives it.
    ViewHandle(const platform::ViewClass& viewClass, ImageStore& images);

    const std::shared_ptr<platform::View>& view() const noexcept { return view_; }

    /// Throws ScenarioError, without naming a place, for a key that makes no sense for the view's class or a
    /// picture that cannot be read.
    void apply(const ViewSettings& settings);
    /// Finds out beforehand, and throws then, what `apply` would throw.
    void check(const ViewSettings& settings) const;

  private:
    void requireSuitable(const ViewSettings& settings) const;
    void applyAppearance(const ViewSettings& settings);
    void applyText(const ViewSettings& settings);
    void applyImage(const ViewSettings& settings);
    void applyAnimation(const ViewSettings& settings);
    void redrawText();
    /// The label takes the room of its text, as a toolkit's would.
    Rect buttonLabelFrame(const std::string& text) const;
    TextStyle textStyle() const;
    platform::TextContent* textContent() const;
    /// The view that shows the text: the button's label, else the view itself.
    platform::View& textBearer() const;

    ImageStore& images_;
    const ViewKind kind_;
    const std::shared_ptr<platform::View> view_;
    const std::shared_ptr<platform::Label> buttonLabel_;
    std::optional<Color> color_;
    std::optional<Animation> animation_;
    Size drawnSize_;
};

}  // namespace mireth::phone
