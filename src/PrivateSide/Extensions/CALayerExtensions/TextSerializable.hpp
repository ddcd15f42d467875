// The text form of views that bear text; view comparison looks for changes in it.
#pragma once

#include <string>

#include "MirethVex/Platform/TextViews.hpp"

namespace mireth {

/// Text, font and alignment in three lines, each but the last ended by "|".
std::string serialize(const platform::Label& label);
/// For text fields and text views; has a fourth line, which says who has the keyboard.
std::string serialize(const platform::TextInputView& input);

/// Appends the text form of a label, a text field or a text view. False for other views, which have none.
bool appendSerialized(std::string& text, const platform::View& view);

}  // namespace mireth
