// "bytes=FIRST-LAST", "bytes=FIRST-" and "bytes=-COUNT".
#include "exchange/ByteRange.hpp"

#include <algorithm>
#include <charconv>

namespace mireth::receiver {
namespace {

std::optional<std::uint64_t> numberIn(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

}  // namespace

std::expected<std::optional<ByteRange>, RangeError> byteRange(std::string_view header, std::uint64_t size) {
    constexpr std::string_view unit = "bytes=";
    const auto dash = header.find('-');
    if (!header.starts_with(unit) || dash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto before = header.substr(unit.size(), dash - unit.size());
    const auto after = header.substr(dash + 1);
    const auto first = numberIn(before);
    const auto last = numberIn(after);
    if (before.empty() && last) {
        if (*last == 0 || size == 0) {
            return std::unexpected(RangeError::unsatisfiable);
        }
        const auto count = std::min(*last, size);
        return ByteRange{.first = size - count, .size = count};
    }
    if (!first || (!last && !after.empty()) || (last && *last < *first)) {
        return std::nullopt;
    }
    if (*first >= size) {
        return std::unexpected(RangeError::unsatisfiable);
    }
    return ByteRange{.first = *first, .size = std::min(last.value_or(size - 1), size - 1) - *first + 1};
}

}  // namespace mireth::receiver
