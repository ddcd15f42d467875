// A value in the scenario file together with its place there, so that every complaint can name it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mireth::phone {

/// Refers to the document, which must outlive it. Every reading operation throws ScenarioError when the
/// value is of another type or out of range.
class JsonNode {
  public:
    explicit JsonNode(const nlohmann::ordered_json& value, std::string path = "$")
        : value_(&value), path_(std::move(path)) {}

    [[noreturn]] void fail(const std::string& why) const;
    /// Says what it must be, and what stands there instead.
    [[noreturn]] void failOtherwise(const std::string& what) const;
    const std::string& path() const noexcept { return path_; }

    bool isNull() const;
    bool isText() const;
    double number(double lowest, double highest) const;
    std::int64_t integer(std::int64_t lowest, std::int64_t highest) const;
    bool boolean() const;
    /// Text without NUL.
    std::string text(std::size_t maximumBytes = 10'000) const;
    /// Text that is not empty and has no control characters: names, identifiers, paths.
    std::string name() const;
    /// What stands there, as it may be quoted in a complaint: `"a text"`, `12`, `a list`.
    std::string shown() const;
    /// One of `choices`; its index.
    std::size_t choice(std::span<const std::string_view> choices) const;

    std::vector<JsonNode> elements(std::size_t fewest, std::size_t most) const;
    std::vector<double> numbers(std::size_t count, double lowest, double highest) const;

    /// Requires an object whose keys are all in one of the lists.
    void requireKeys(std::span<const std::string_view> known,
                     std::span<const std::string_view> alsoKnown = {}) const;
    std::optional<JsonNode> find(std::string_view key) const;
    /// The member called `key`, which has to be there.
    JsonNode at(std::string_view key) const;
    std::vector<std::pair<std::string, JsonNode>> members(std::size_t most) const;

  private:
    void requireObject() const;

    const nlohmann::ordered_json* value_;
    std::string path_;
};

}  // namespace mireth::phone
