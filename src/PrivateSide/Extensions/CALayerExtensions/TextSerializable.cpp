#include "PrivateSide/Extensions/CALayerExtensions/TextSerializable.hpp"

#include <string_view>

#include "Base/DecimalText.hpp"

namespace mireth {

namespace {

constexpr std::string_view separator = "|\n";

std::string orNil(const std::optional<std::string>& text) {
    return text.value_or("nil");
}

std::string textLine(const platform::TextContent& content) {
    return "    Text: " + orNil(content.text) + ", " + orNil(content.attributedText);
}

std::string fontLine(const platform::TextContent& content) {
    return content.font ? "    Font: " + content.font->name + ", " + decimalText(content.font->pointSize)
                        : "    Font: nil, nil";
}

std::string alignmentLine(const platform::TextContent& content) {
    return "    TextAlignment: " + std::to_string(static_cast<int>(content.alignment));
}

std::string lines(const platform::TextContent& content) {
    std::string text = textLine(content);
    text.append(separator).append(fontLine(content)).append(separator).append(alignmentLine(content));
    return text;
}

}  // namespace

std::string serialize(const platform::Label& label) {
    return lines(label.content);
}

std::string serialize(const platform::TextInputView& input) {
    std::string text = lines(input.content);
    text.append(separator).append("    IsFirstResponder: ").append(input.isFirstResponder ? "true" : "false");
    return text;
}

std::optional<std::string> serialize(const platform::View& view) {
    if (const auto* label = dynamic_cast<const platform::Label*>(&view)) {
        return serialize(*label);
    }
    if (const auto* input = dynamic_cast<const platform::TextInputView*>(&view)) {
        return serialize(*input);
    }
    return std::nullopt;
}

}  // namespace mireth
