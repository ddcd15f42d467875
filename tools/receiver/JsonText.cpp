// Capped JSON reading over nlohmann's parser.
#include "JsonText.hpp"

#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace mireth::receiver {
namespace {

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

// Two values under one key would let two readers see different things.
class RepeatedKeys {
  public:
    bool operator()(nlohmann::ordered_json::parse_event_t event, const nlohmann::ordered_json& parsed) {
        using Event = nlohmann::ordered_json::parse_event_t;
        if (event == Event::object_start) {
            open_.emplace_back();
        } else if (event == Event::object_end) {
            open_.pop_back();
        } else if (event == Event::key) {
            const auto& key = parsed.get_ref<const std::string&>();
            if (!open_.back().insert(key).second && repeated_.empty()) {
                repeated_ = "the key \"" + key + "\" stands twice in one object";
            }
        }
        return true;
    }
    const std::string& complaint() const { return repeated_; }

  private:
    std::vector<std::set<std::string>> open_;
    std::string repeated_;
};

}  // namespace

std::expected<nlohmann::ordered_json, std::string> parseJson(std::string_view text, const JsonCaps& caps) {
    if (text.size() > caps.bytes) {
        return std::unexpected("longer than " + std::to_string(caps.bytes) + " bytes");
    }
    if (nestsDeeperThan(text, caps.depth)) {
        return std::unexpected("nested deeper than " + std::to_string(caps.depth) + " levels");
    }
    RepeatedKeys keys;
    try {
        auto value = nlohmann::ordered_json::parse(
            text, [&keys](int, nlohmann::ordered_json::parse_event_t event, nlohmann::ordered_json& parsed) {
                return keys(event, parsed);
            });
        if (!keys.complaint().empty()) {
            return std::unexpected(keys.complaint());
        }
        return value;
    } catch (const nlohmann::json::parse_error& error) {
        return std::unexpected("not JSON at byte " + std::to_string(error.byte));
    } catch (const nlohmann::json::exception& error) {
        return std::unexpected(std::string("not usable JSON: ") + error.what());
    }
}

std::string jsonText(const nlohmann::ordered_json& value) {
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace mireth::receiver
