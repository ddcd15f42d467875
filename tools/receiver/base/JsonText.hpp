// Reads JSON that came from outside, with its size and depth capped before anything is built from it.
// Included by .cpp files only, as it names the JSON library's type.
#pragma once

#include <cstddef>
#include <expected>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace mireth::receiver {

struct JsonCaps {
    std::size_t bytes;
    std::size_t depth = 16;        ///< nested arrays and objects
    std::size_t keys = 256;        ///< in one object
    std::size_t values = 300'000;  ///< in all, arrays and objects included
};

/// The value that `text` holds, keys in their order, or why there is none ("at byte 17: ...").
/// Malformed UTF-8 and a key that stands twice in one object are refused.
std::expected<nlohmann::ordered_json, std::string> parseJson(std::string_view text, const JsonCaps& caps);

/// `value` as compact JSON text; characters that are not UTF-8 are replaced, never thrown over.
std::string jsonText(const nlohmann::ordered_json& value);

}  // namespace mireth::receiver
