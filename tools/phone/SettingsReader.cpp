// A reader for each of a view's settings.
#include "phone/SettingsReader.hpp"

#include <string>

namespace mireth::phone {

namespace {

constexpr double farthest = 100'000;

Rect readFrame(const JsonNode& node) {
    const auto parts = node.elements(4, 4);
    return {parts[0].number(-farthest, farthest), parts[1].number(-farthest, farthest),
            parts[2].number(0, farthest), parts[3].number(0, farthest)};
}

Border readBorder(const JsonNode& node) {
    static constexpr std::array<std::string_view, 2> keys{"width", "color"};
    node.requireKeys(keys);
    Border border;
    if (const auto width = node.find("width")) {
        border.width = width->number(0, 1000);
    }
    border.color = readColor(node.at("color"));
    return border;
}

platform::Font readFont(const JsonNode& node) {
    const auto parts = node.elements(2, 2);
    return {parts[0].name(), parts[1].number(1, 500)};
}

platform::TextAlignment readAlignment(const JsonNode& node) {
    static constexpr std::array<std::string_view, 5> names{"left", "center", "right", "justified", "natural"};
    return static_cast<platform::TextAlignment>(node.choice(names));
}

Animation readAnimation(const JsonNode& node) {
    static constexpr std::array<std::string_view, 2> keys{"frame", "opacity"};
    node.requireKeys(keys);
    Animation animation;
    if (const auto frame = node.find("frame")) {
        animation.frame = readFrame(*frame);
    }
    if (const auto opacity = node.find("opacity")) {
        animation.opacity = opacity->number(0, 1);
    }
    if (!animation.frame && !animation.opacity) {
        node.fail("lacks the key \"frame\"");
    }
    return animation;
}

/// Reads the member `key`, if there is one, with `read`.
template <class Result, class Read>
void readInto(Result& result, const JsonNode& node, std::string_view key, Read read) {
    if (const auto value = node.find(key)) {
        result = read(*value);
    }
}

/// The same; null takes the thing away.
template <class T, class Read>
void readClearable(Clearable<T>& result, const JsonNode& node, std::string_view key, Read read) {
    readInto(result, node, key, [&read](const JsonNode& value) -> std::optional<T> {
        return value.isNull() ? std::nullopt : std::optional<T>(read(value));
    });
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'a' && character <= 'f') {
        return character - 'a' + 10;
    }
    return character >= 'A' && character <= 'F' ? character - 'A' + 10 : -1;
}

}  // namespace

Color readColor(const JsonNode& node) {
    static const std::string colour = R"(a colour such as "#3366ff" or "#3366ff80")";
    const std::string text = node.isText() ? node.text() : std::string();
    if ((text.size() != 7 && text.size() != 9) || text[0] != '#') {
        node.failOtherwise(colour);
    }
    std::array<double, 4> channels{0, 0, 0, 1};
    for (std::size_t index = 1; index < text.size(); index += 2) {
        const int high = hexDigit(text[index]);
        const int low = hexDigit(text[index + 1]);
        if (high < 0 || low < 0) {
            node.failOtherwise(colour);
        }
        channels.at(index / 2) = (high * 16 + low) / 255.0;
    }
    return {channels[0], channels[1], channels[2], channels[3]};
}

ImageSource SettingsReader::readImage(const JsonNode& node) const {
    const std::string text = node.name();
    if (text.starts_with('#')) {
        return readColor(node);
    }
    const std::filesystem::path path(text);
    if (path.is_absolute()) {
        node.failOtherwise("a path relative to the scenario file");
    }
    return folder_ / path;
}

ViewSettings SettingsReader::read(const JsonNode& node) const {
    ViewSettings settings;
    const auto boolean = [](const JsonNode& value) { return value.boolean(); };
    readInto(settings.frame, node, "frame", readFrame);
    readClearable(settings.background, node, "background", readColor);
    readClearable(settings.color, node, "color", readColor);
    readClearable(settings.border, node, "border", readBorder);
    readInto(settings.cornerRadius, node, "cornerRadius",
             [](const JsonNode& value) { return value.number(0, farthest); });
    readInto(settings.opacity, node, "opacity", [](const JsonNode& value) { return value.number(0, 1); });
    readInto(settings.hidden, node, "hidden", boolean);
    readInto(settings.clips, node, "clips", boolean);
    readClearable(settings.text, node, "text", [](const JsonNode& value) { return value.text(); });
    readClearable(settings.font, node, "font", readFont);
    readInto(settings.alignment, node, "alignment", readAlignment);
    readInto(settings.firstResponder, node, "firstResponder", boolean);
    readClearable(settings.image, node, "image", [this](const JsonNode& value) { return readImage(value); });
    readClearable(settings.animated, node, "animated", readAnimation);
    return settings;
}

}  // namespace mireth::phone
