// One function for each kind of item; the first complaint wins.
#include "viewing/SessionQueryReader.hpp"

#include <charconv>

#include "base/PrintableText.hpp"

namespace mireth::receiver {
namespace {

constexpr std::int64_t mostSessions = 200;
constexpr std::size_t longestText = 1024;

class Reader {
  public:
    explicit Reader(const RequestTarget& target) : target_(target) {}

    std::optional<std::string> text(const char* name) {
        auto value = target_.formItem(name);
        if (!value || value->empty()) {
            return std::nullopt;
        }
        if (value->size() > longestText || !isUtf8(*value)) {
            complain(name, "is too long or no text");
        }
        return value;
    }

    std::optional<std::int64_t> whole(const char* name) {
        const auto value = text(name);
        if (!value) {
            return std::nullopt;
        }
        std::int64_t number = 0;
        const auto* const last = value->data() + value->size();
        const auto [end, error] = std::from_chars(value->data(), last, number);
        if (error != std::errc() || end != last) {
            complain(name, "is no whole number");
        }
        return number;
    }

    std::size_t limit() {
        const auto value = whole("limit").value_or(50);
        if (value < 1 || value > mostSessions) {
            complain("limit", "must be from 1 to " + std::to_string(mostSessions));
        }
        return static_cast<std::size_t>(value);
    }

    std::optional<Signal> signal() {
        const auto value = text("signal");
        if (!value) {
            return std::nullopt;
        }
        for (const auto& [name, signal] :
             {std::pair{"tap", Signal::tap}, std::pair{"rageTap", Signal::rageTap},
              std::pair{"deadTap", Signal::deadTap}, std::pair{"errorTap", Signal::errorTap}}) {
            if (*value == name) {
                return signal;
            }
        }
        complain("signal", "must be tap, rageTap, deadTap or errorTap");
        return std::nullopt;
    }

    const std::string& complaint() const { return complaint_; }

  private:
    void complain(const std::string& name, const std::string& why) {
        if (complaint_.empty()) {
            complaint_ = name + " " + why;
        }
    }

    const RequestTarget& target_;
    std::string complaint_;
};

}  // namespace

std::expected<SessionQuery, std::string> readSessionQuery(const RequestTarget& target) {
    Reader reader(target);
    SessionQuery query{.limit = reader.limit(),
                       .before = reader.whole("cursor"),
                       .projectId = reader.text("project"),
                       .fromMillis = reader.whole("from"),
                       .toMillis = reader.whole("to"),
                       .signal = reader.signal(),
                       .screen = reader.text("screen"),
                       .text = reader.text("text")};
    if (!reader.complaint().empty()) {
        return std::unexpected(reader.complaint());
    }
    return query;
}

}  // namespace mireth::receiver
