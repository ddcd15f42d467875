#include "PrivateSide/Extensions/CALayerExtensions/TextSerializable.hpp"

#include <optional>
#include <string_view>

#include "Base/DecimalText.hpp"

namespace mireth {

namespace {

std::string_view orNil(const std::optional<std::string>& text) {
    return text ? std::string_view(*text) : std::string_view("nil");
}

void appendFont(std::string& text, const std::optional<platform::Font>& font) {
    if (!font) {
        text.append("nil, nil");
        return;
    }
    text.append(font->name).append(", ").append(decimalText(font->pointSize));
}

void append(std::string& text, const platform::TextContent& content) {
    text.append("    Text: ").append(orNil(content.text)).append(", ").append(orNil(content.attributedText));
    text.append("|\n    Font: ");
    appendFont(text, content.font);
    text.append("|\n    TextAlignment: ").append(std::to_string(static_cast<int>(content.alignment)));
}

void append(std::string& text, const platform::Label& label) {
    append(text, label.content);
}

void append(std::string& text, const platform::TextInputView& input) {
    append(text, input.content);
    text.append("|\n    IsFirstResponder: ").append(input.isFirstResponder ? "true" : "false");
}

}  // namespace

std::string serialize(const platform::Label& label) {
    std::string text;
    append(text, label);
    return text;
}

std::string serialize(const platform::TextInputView& input) {
    std::string text;
    append(text, input);
    return text;
}

bool appendSerialized(std::string& text, const platform::View& view) {
    if (const auto* label = dynamic_cast<const platform::Label*>(&view)) {
        append(text, *label);
        return true;
    }
    if (const auto* input = dynamic_cast<const platform::TextInputView*>(&view)) {
        append(text, *input);
        return true;
    }
    return false;
}

}  // namespace mireth
