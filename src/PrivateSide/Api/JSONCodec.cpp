#include "PrivateSide/Api/JSONCodec.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <utility>

namespace mireth {

namespace {

constexpr int deepestLevel = 64;

/// The path of the first number that JSON cannot hold, or nothing.
std::optional<std::string> findUnencodable(const Json& value, const std::string& path) {
    if (value.is_number_float() && !std::isfinite(value.get<double>())) {
        return path.empty() ? "the top level" : path;
    }
    if (value.is_object() || value.is_array()) {
        for (const auto& [key, element] : value.items()) {
            std::string place = path;
            place += path.empty() ? "" : ".";
            place += key;
            if (auto found = findUnencodable(element, place)) {
                return found;
            }
        }
    }
    return std::nullopt;
}

bool isAllowedInHost(unsigned char c) {
    constexpr std::string_view others = "-._~!$&'()*+,;=:[]";
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           others.find(static_cast<char>(c)) != std::string_view::npos;
}

void appendHostEncoded(std::string& out, std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (isAllowedInHost(byte)) {
            out += character;
        } else {
            out += '%';
            out += digits[byte >> 4U];
            out += digits[byte & 0xFU];
        }
    }
}

/// The fewest digits, with an exponent where they would need many zeros.
void appendNumber(std::string& out, double value) {
    constexpr double smallestPlain = 1e-5;
    constexpr double largestPlain = 1e16;
    const double size = std::abs(value);
    const bool plain = size == 0 || (size >= smallestPlain && size < largestPlain);
    char text[64];
    const auto written = std::to_chars(std::begin(text), std::end(text), value,
                                       plain ? std::chars_format::fixed : std::chars_format::scientific);
    out.append(std::begin(text), written.ptr);
}

void appendString(std::string& out, const std::string& text) {
    out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

void appendValue(std::string& out, const Json& value);

void appendObject(std::string& out, const Json& object) {
    char separator = '{';
    for (const auto& [key, element] : object.items()) {
        out += std::exchange(separator, ',');
        appendString(out, key);
        out += ':';
        appendValue(out, element);
    }
    out += object.empty() ? "{}" : "}";
}

void appendArray(std::string& out, const Json& array) {
    char separator = '[';
    for (const auto& element : array) {
        out += std::exchange(separator, ',');
        appendValue(out, element);
    }
    out += array.empty() ? "[]" : "]";
}

void appendValue(std::string& out, const Json& value) {
    if (value.is_object()) {
        appendObject(out, value);
    } else if (value.is_array()) {
        appendArray(out, value);
    } else if (value.is_number_float()) {
        // Not with dump(): its texts of some floats have more digits than needed.
        appendNumber(out, value.get<double>());
    } else {
        out += value.dump(-1, ' ', false, Json::error_handler_t::replace);
    }
}

/// True when `value` is a whole number that a 64-bit integer holds exactly and JSON readers read exactly.
bool isPlainInteger(double value) {
    constexpr double largestExact = 9007199254740992.0;  // 2^53
    return std::trunc(value) == value && std::abs(value) <= largestExact;
}

}  // namespace

ApiResult<std::string> JSONCodec::encode(const Json& value, ErrorPosting posting) const {
    if (const auto unencodable = findUnencodable(value, "")) {
        log_.error(LogTag::network, "JSON encoding failed",
                   {{"error", "The number at " + *unencodable + " is infinite or not a number."}},
                   posting == ErrorPosting::on);
        return std::unexpected(ApiError::encodingError);
    }
    return jsonText(value);
}

std::string JSONCodec::urlEncodeBodyParameters(const TextPairs& params) {
    std::string body;
    for (const auto& [key, value] : params) {
        if (!body.empty()) {
            body += '&';
        }
        appendHostEncoded(body, key);
        body += '=';
        appendHostEncoded(body, value);
    }
    return body;
}

void JSONCodec::logDecodingFailure(const std::string& reason, ErrorPosting posting) const {
    log_.error(LogTag::network, "JSON decoding failed", {{"error", reason}}, posting == ErrorPosting::on);
}

Json jsonNumber(float value) {
    if (!std::isfinite(value)) {
        return static_cast<double>(value);
    }
    // The shortest text of the float, read as a double, is a double whose own shortest text is the same.
    char text[64];
    const auto written =
        std::to_chars(std::begin(text), std::end(text), value, std::chars_format::scientific);
    double widened = 0;
    std::from_chars(std::begin(text), written.ptr, widened);
    return jsonNumber(widened);
}

Json jsonNumber(double value) {
    if (std::isfinite(value) && isPlainInteger(value)) {
        return static_cast<std::int64_t>(value);
    }
    return value;
}

std::string jsonText(const Json& value) {
    std::string text;
    appendValue(text, value);
    return text;
}

ParsedJson parseUntrustedJson(std::string_view text) {
    const auto refuseDepth = [](int depth, ParsedJson::parse_event_t, ParsedJson&) {
        if (depth > deepestLevel) {
            throw std::runtime_error("The JSON text is nested more than 64 levels deep.");
        }
        return true;
    };
    return ParsedJson::parse(text, refuseDepth);
}

}  // namespace mireth
