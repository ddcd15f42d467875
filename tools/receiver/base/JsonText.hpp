// Reads JSON that came from outside, with its size and depth capped before anything is built from it.
// Included by .cpp files only, as it names the JSON library's type.
#pragma once

#include <cstddef>
#include <expected>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace mireth::receiver {

struct JsonCaps {
    std::size_t bytes;
    std::size_t depth = 16;        ///< nested arrays and objects
    std::size_t keys = 256;        ///< in one object
    std::size_t values = 300'000;  ///< in all, arrays and objects included
};

/// Why `text` is not to be read ("not JSON at line 1, column 17"); empty when it holds a value within the
/// caps. Malformed UTF-8 and a key that stands twice in one object are refused. Nothing is built.
std::string jsonComplaint(std::string_view text, const JsonCaps& caps);

/// The value that `text` holds, keys in their order, or the complaint about it.
std::expected<nlohmann::ordered_json, std::string> parseJson(std::string_view text, const JsonCaps& caps);

/// Takes the next value off the front of `elements`, which is what stands between the brackets of an array
/// that was found to be JSON; none when there is no more. So that a long array can be read without being
/// built whole.
std::optional<std::string_view> nextElement(std::string_view& elements);
/// What stands between the brackets of the array that `text` holds; none when it holds another value.
std::optional<std::string_view> elementsOf(std::string_view text);

/// `value` as compact JSON text; characters that are not UTF-8 are replaced, never thrown over.
std::string jsonText(const nlohmann::ordered_json& value);

}  // namespace mireth::receiver
