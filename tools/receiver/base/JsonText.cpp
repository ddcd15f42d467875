// Capped JSON reading over nlohmann's parser.
#include "base/JsonText.hpp"

#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

// A scan of the raw text, so that a bomb costs nothing but the scan.
bool nestsDeeperThan(std::string_view text, std::size_t limit) {
    std::size_t depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            i += c == '\\' ? 1 : 0;
            inString = c != '"';
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit) {
                return true;
            }
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return false;
}

// Reads along before anything is built. Two values under one key would let two readers see different things;
// many keys cost the library time by their square, many values memory. (The library's own way of looking on
// while it builds costs time by the square of an array's length.)
class Scrutiny final : public nlohmann::json_sax<Json> {
  public:
    explicit Scrutiny(const JsonCaps& caps) : caps_(caps) {}

    bool null() override { return count(); }
    bool boolean(bool) override { return count(); }
    bool number_integer(number_integer_t) override { return count(); }
    bool number_unsigned(number_unsigned_t) override { return count(); }
    bool number_float(number_float_t, const string_t&) override { return count(); }
    bool string(string_t&) override { return count(); }
    bool binary(binary_t&) override { return count(); }
    bool start_object(std::size_t) override {
        open_.emplace_back();
        return count();
    }
    bool end_object() override {
        open_.pop_back();
        return true;
    }
    bool start_array(std::size_t) override { return count(); }
    bool end_array() override { return true; }
    bool key(string_t& key) override {
        if (!open_.back().insert(key).second) {
            return refuse("the key \"" + key + "\" stands twice in one object");
        }
        return open_.back().size() <= caps_.keys ||
               refuse("with an object of more than " + std::to_string(caps_.keys) + " keys");
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception&) override {
        return refuse("not JSON at byte " + std::to_string(position));
    }

    const std::string& complaint() const { return complaint_; }

  private:
    bool count() {
        return ++values_ <= caps_.values ||
               refuse("of more than " + std::to_string(caps_.values) + " values");
    }
    bool refuse(const std::string& why) {
        complaint_ = why;
        return false;
    }

    const JsonCaps& caps_;
    std::vector<std::set<std::string>> open_;
    std::size_t values_ = 0;
    std::string complaint_;
};

}  // namespace

std::expected<nlohmann::ordered_json, std::string> parseJson(std::string_view text, const JsonCaps& caps) {
    if (text.size() > caps.bytes) {
        return std::unexpected("longer than " + std::to_string(caps.bytes) + " bytes");
    }
    if (nestsDeeperThan(text, caps.depth)) {
        return std::unexpected("nested deeper than " + std::to_string(caps.depth) + " levels");
    }
    Scrutiny scrutiny(caps);
    if (!Json::sax_parse(text, &scrutiny)) {
        return std::unexpected(scrutiny.complaint());
    }
    return Json::parse(text);
}

std::string jsonText(const nlohmann::ordered_json& value) {
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace mireth::receiver
