// The views that bear text: labels, text fields and text views.
#pragma once

#include <optional>
#include <string>

#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

enum class TextAlignment { left = 0, center = 1, right = 2, justified = 3, natural = 4 };

struct Font {
    std::string name;
    /// In points.
    double pointSize = 0;
    bool operator==(const Font&) const = default;
};

/// What text views have in common. Texts are UTF-8. Main thread only. The library reads it at each tap and
/// one to two seconds later, to see whether a text has changed, compares it as it is and sends nothing of it.
/// A binding fills it when the superview is asked for its `subviews`; left empty, a tap that changes nothing
/// but a text counts as a dead one.
struct TextContent {
    std::optional<std::string> text;
    /// The characters of the attributed text, without its attributes.
    std::optional<std::string> attributedText;
    std::optional<Font> font;
    TextAlignment alignment = TextAlignment::natural;
};

/// Shows text that the user does not edit.
class MIRETH_EXPORT Label : public View {
  public:
    explicit Label(const ViewClass& viewClass = ViewClass::label()) : View(viewClass) {}
    TextContent content;
};

/// A view in which the user enters text.
class MIRETH_EXPORT TextInputView : public View {
  public:
    TextContent content;
    /// True while it has the keyboard.
    bool isFirstResponder = false;

  protected:
    using View::View;
};

/// One line of text entry.
class MIRETH_EXPORT TextField : public TextInputView {
  public:
    explicit TextField(const ViewClass& viewClass = ViewClass::textField()) : TextInputView(viewClass) {}
};

/// Several lines of text entry.
class MIRETH_EXPORT TextView : public TextInputView {
  public:
    explicit TextView(const ViewClass& viewClass = ViewClass::textView()) : TextInputView(viewClass) {}
};

}  // namespace mireth::platform
