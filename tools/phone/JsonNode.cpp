// Typed reading; each refusal names the place in the file.
#include "phone/JsonNode.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "phone/JsonPath.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {

namespace {

std::string shortNumber(double value) {
    const std::string text = nlohmann::json(value).dump();
    return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

}  // namespace

void JsonNode::fail(const std::string& why) const {
    throw ScenarioError(path_, why);
}

void JsonNode::failOtherwise(const std::string& what) const {
    fail("must be " + what + ", not " + shown());
}

std::string JsonNode::shown() const {
    if (value_->is_string()) {
        return quotedText(value_->get_ref<const std::string&>());
    }
    if (value_->is_object()) {
        return "an object";
    }
    return value_->is_array() ? "a list" : value_->dump();
}

bool JsonNode::isNull() const {
    return value_->is_null();
}

bool JsonNode::isText() const {
    return value_->is_string();
}

double JsonNode::number(double lowest, double highest) const {
    const auto isWithin = [&](double value) { return value >= lowest && value <= highest; };
    if (!value_->is_number() || !isWithin(value_->get<double>())) {
        failOtherwise("a number from " + shortNumber(lowest) + " to " + shortNumber(highest));
    }
    return value_->get<double>();
}

std::int64_t JsonNode::integer(std::int64_t lowest, std::int64_t highest) const {
    const bool fits = value_->is_number_unsigned()
                          ? std::cmp_less_equal(value_->get<std::uint64_t>(), highest)
                          : value_->is_number_integer();
    if (!fits || value_->get<std::int64_t>() < lowest || value_->get<std::int64_t>() > highest) {
        failOtherwise("a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return value_->get<std::int64_t>();
}

bool JsonNode::boolean() const {
    if (!value_->is_boolean()) {
        failOtherwise("true or false");
    }
    return value_->get<bool>();
}

std::string JsonNode::text(std::size_t maximumBytes) const {
    if (!value_->is_string()) {
        failOtherwise("a text");
    }
    auto value = value_->get<std::string>();
    if (value.size() > maximumBytes) {
        fail("must be a text of at most " + std::to_string(maximumBytes) + " bytes");
    }
    if (value.find('\0') != std::string::npos) {
        fail("must not contain the character NUL");
    }
    return value;
}

std::string JsonNode::name() const {
    std::string value = text(500);
    if (value.empty()) {
        fail("must not be empty");
    }
    if (std::ranges::any_of(value, isControl)) {
        fail("must not contain control characters");
    }
    return value;
}

std::size_t JsonNode::choice(std::span<const std::string_view> choices) const {
    if (value_->is_string()) {
        const auto found = std::ranges::find(choices, value_->get_ref<const std::string&>());
        if (found != choices.end()) {
            return static_cast<std::size_t>(found - choices.begin());
        }
    }
    std::string list;
    for (const auto& one : choices) {
        list += (list.empty() ? "\"" : ", \"") + std::string(one) + "\"";
    }
    failOtherwise("one of " + list);
}

std::vector<JsonNode> JsonNode::elements(std::size_t fewest, std::size_t most) const {
    if (!value_->is_array()) {
        failOtherwise("a list");
    }
    if (value_->size() < fewest || value_->size() > most) {
        const std::string count =
            fewest == most ? std::to_string(most) : std::to_string(fewest) + " to " + std::to_string(most);
        fail("must have " + count + " elements, and has " + std::to_string(value_->size()));
    }
    std::vector<JsonNode> nodes;
    nodes.reserve(value_->size());
    for (std::size_t index = 0; index < value_->size(); ++index) {
        nodes.emplace_back((*value_)[index], elementPath(path_, index));
    }
    return nodes;
}

std::vector<double> JsonNode::numbers(std::size_t count, double lowest, double highest) const {
    std::vector<double> values;
    for (const auto& node : elements(count, count)) {
        values.push_back(node.number(lowest, highest));
    }
    return values;
}

void JsonNode::requireObject() const {
    if (!value_->is_object()) {
        failOtherwise("an object");
    }
}

void JsonNode::requireKeys(std::span<const std::string_view> known,
                           std::span<const std::string_view> alsoKnown) const {
    requireObject();
    for (const auto& item : value_->items()) {
        const auto is = [&item](std::string_view key) { return key == item.key(); };
        if (std::ranges::none_of(known, is) && std::ranges::none_of(alsoKnown, is)) {
            fail("has an unknown key " + quotedText(item.key()));
        }
    }
}

std::optional<JsonNode> JsonNode::find(std::string_view key) const {
    requireObject();
    const auto found = value_->find(std::string(key));
    return found == value_->end() ? std::nullopt : std::optional(JsonNode(*found, memberPath(path_, key)));
}

JsonNode JsonNode::at(std::string_view key) const {
    auto found = find(key);
    if (!found) {
        fail("lacks the key \"" + std::string(key) + "\"");
    }
    return *std::move(found);
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::members(std::size_t most) const {
    requireObject();
    if (value_->size() > most) {
        fail("must have at most " + std::to_string(most) + " keys");
    }
    std::vector<std::pair<std::string, JsonNode>> nodes;
    for (const auto& item : value_->items()) {
        nodes.emplace_back(item.key(), JsonNode(item.value(), memberPath(path_, item.key())));
    }
    return nodes;
}

}  // namespace mireth::phone
