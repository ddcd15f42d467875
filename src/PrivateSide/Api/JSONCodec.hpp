// All JSON work of the network side, and the form encoding.
#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PrivateSide/Api/ApiError.hpp"
#include "PrivateSide/Api/ErrorPosting.hpp"
#include "PrivateSide/Api/Json.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Reads a wire model from a JSON text, or says in words why it cannot be read. Specialised beside each
/// model.
template <class Model>
std::expected<Model, std::string> decodeModel(std::string_view text);

/// Names and values, in writing order.
using TextPairs = std::vector<std::pair<std::string, std::string>>;

/// Any thread.
class JSONCodec {
  public:
    explicit JSONCodec(MirethLog& log) : log_(log) {}

    /// The value as JSON text without white space. A number that is infinite or not a number fails with
    /// `encodingError` and a log line that names it. Text that is not UTF-8 is written with U+FFFD in
    /// place of the broken bytes.
    ApiResult<std::string> encode(const Json& value, ErrorPosting posting = ErrorPosting::on) const;

    template <class Model>
    ApiResult<Model> decode(std::string_view text, ErrorPosting posting = ErrorPosting::on) const {
        auto model = decodeModel<Model>(text);
        if (!model) {
            logDecodingFailure(model.error(), posting);
            return std::unexpected(ApiError::decodingError);
        }
        return std::move(*model);
    }

    /// key=value pairs joined by "&". Every byte that is not of the host syntax of RFC 3986 (unreserved,
    /// sub-delims, ":", "[", "]") becomes %XX. So "&" and "=" inside a key or value stay as they are: the
    /// service expects it.
    static std::string urlEncodeBodyParameters(const TextPairs& params);

  private:
    void logDecodingFailure(const std::string& reason, ErrorPosting posting) const;
    MirethLog& log_;
};

/// A 32-bit float as the shortest decimal that reads back as the same float; whole numbers without a
/// fraction.
Json jsonNumber(float value);
/// A 64-bit float; whole numbers without a fraction.
Json jsonNumber(double value);

/// The value as text without white space. Numbers are finite; a 64-bit float is written with the fewest
/// digits that read back as the same float. Text that is not UTF-8 is written with U+FFFD for the broken
/// bytes.
std::string jsonText(const Json& value);

/// Parses a text from the network: at most 64 levels deep. Throws a std::exception with a reason.
ParsedJson parseUntrustedJson(std::string_view text);

}  // namespace mireth
