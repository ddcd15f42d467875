// Capped JSON reading over nlohmann's parser.
#include "base/JsonText.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view blanks = " \t\r\n";

// Reads JSON character by character and knows how deep it stands.
class Depth {
  public:
    /// The depth after `c`.
    std::size_t after(char c) {
        if (escaped_) {
            escaped_ = false;
        } else if (inString_) {
            escaped_ = c == '\\';
            inString_ = c != '"';
        } else if (c == '"') {
            inString_ = true;
        } else if (c == '[' || c == '{') {
            ++depth_;
        } else if ((c == ']' || c == '}') && depth_ > 0) {
            --depth_;
        }
        return depth_;
    }
    bool inString() const { return inString_; }

  private:
    std::size_t depth_ = 0;
    bool inString_ = false;
    bool escaped_ = false;
};

// A scan of the raw text, so that a bomb costs nothing but the scan.
bool nestsDeeperThan(std::string_view text, std::size_t limit) {
    Depth depth;
    return std::ranges::any_of(text, [&](char c) { return depth.after(c) > limit; });
}

std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    return text;
}

// Reads along before anything is built. Two values under one key would let two readers see different things;
// many keys cost the library time by their square, many values memory. (The library's own way of looking on
// while it builds costs time by the square of an array's length.)
class Scrutiny final : public nlohmann::json_sax<Json> {
  public:
    Scrutiny(std::string_view text, const JsonCaps& caps) : text_(text), caps_(caps) {}

    bool null() override { return count(); }
    bool boolean(bool) override { return count(); }
    bool number_integer(number_integer_t) override { return count(); }
    bool number_unsigned(number_unsigned_t) override { return count(); }
    bool number_float(number_float_t, const string_t&) override { return count(); }
    bool string(string_t&) override { return count(); }
    bool binary(binary_t&) override { return count(); }
    bool start_object(std::size_t) override { return open(false); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(true); }
    bool end_array() override { return close(); }
    bool key(string_t& key) override {
        auto& object = open_.back();
        if (!object.keys.insert(key).second) {
            return refuse("the key \"" + key + "\" stands twice in one object" + placeOfInnermost());
        }
        object.key = key;
        return object.keys.size() <= caps_.keys ||
               refuse("with an object of more than " + std::to_string(caps_.keys) + " keys");
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception&) override {
        // Counted from 1, that of the byte that was one too many.
        const auto before = text_.substr(0, position == 0 ? 0 : position - 1);
        const auto lineBegin = before.rfind('\n') + 1;
        return refuse("not JSON at line " + std::to_string(1 + std::ranges::count(before, '\n')) +
                      ", column " + std::to_string(before.size() - lineBegin + 1));
    }

    const std::string& complaint() const { return complaint_; }

  private:
    // An object or an array that has begun and not ended.
    struct Open {
        bool isArray = false;
        std::set<std::string> keys;
        std::string key;        // of the member that is being read
        std::size_t count = 0;  // of the elements begun so far
    };

    bool open(bool isArray) {
        const bool goesOn = count();
        open_.emplace_back().isArray = isArray;
        return goesOn;
    }
    bool close() {
        open_.pop_back();
        return true;
    }
    // Such as ", in projects[0].uploadRate"; empty for the outermost.
    std::string placeOfInnermost() const {
        std::string place;
        for (std::size_t level = 0; level + 1 < open_.size(); ++level) {
            const auto& outer = open_[level];
            place += outer.isArray ? "[" + std::to_string(outer.count - 1) + "]"
                                   : (place.empty() ? "" : ".") + outer.key;
        }
        return place.empty() ? place : ", in " + place;
    }
    bool count() {
        if (!open_.empty()) {
            ++open_.back().count;
        }
        return ++values_ <= caps_.values ||
               refuse("of more than " + std::to_string(caps_.values) + " values");
    }
    bool refuse(const std::string& why) {
        complaint_ = why;
        return false;
    }

    const std::string_view text_;
    const JsonCaps& caps_;
    std::vector<Open> open_;
    std::size_t values_ = 0;
    std::string complaint_;
};

}  // namespace

std::string jsonComplaint(std::string_view text, const JsonCaps& caps) {
    if (text.size() > caps.bytes) {
        return "longer than " + std::to_string(caps.bytes) + " bytes";
    }
    if (nestsDeeperThan(text, caps.depth)) {
        return "nested deeper than " + std::to_string(caps.depth) + " levels";
    }
    Scrutiny scrutiny(text, caps);
    return Json::sax_parse(text, &scrutiny) ? "" : scrutiny.complaint();
}

std::expected<nlohmann::ordered_json, std::string> parseJson(std::string_view text, const JsonCaps& caps) {
    if (auto complaint = jsonComplaint(text, caps); !complaint.empty()) {
        return std::unexpected(std::move(complaint));
    }
    return Json::parse(text);
}

std::optional<std::string_view> elementsOf(std::string_view text) {
    text = withoutBlanks(text);
    const bool array = text.size() >= 2 && text.front() == '[' && text.back() == ']';
    return array ? std::optional(text.substr(1, text.size() - 2)) : std::nullopt;
}

std::optional<std::string_view> nextElement(std::string_view& elements) {
    if (elements.find_first_not_of(blanks) == std::string_view::npos) {
        return std::nullopt;
    }
    Depth depth;
    const auto comma = std::ranges::find_if(
        elements, [&](char c) { return depth.after(c) == 0 && !depth.inString() && c == ','; });
    const auto size = static_cast<std::size_t>(comma - elements.begin());
    const auto element = elements.substr(0, size);
    elements.remove_prefix(std::min(size + 1, elements.size()));
    return withoutBlanks(element);
}

std::string jsonText(const nlohmann::ordered_json& value) {
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace mireth::receiver
