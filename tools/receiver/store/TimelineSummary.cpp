// One pass over the events.
#include "store/TimelineSummary.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "base/JsonText.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t longestText = 256;
// What one chunk may add; a session of honest length stays far below.
constexpr std::size_t mostTexts = 60;

class Summing {
  public:
    void add(const TimelineEvent& event) {
        if (event.details.empty()) {
            return;
        }
        const auto details = parseJson(event.details, {.bytes = event.details.size()});
        if (!details) {
            return;
        }
        if (event.type == "UserInteraction") {
            ++result_.counts.taps;
        } else if (event.type == "SignalCaptured") {
            addSignal(*details);
        } else if (event.type == "ScreenChange") {
            addScreens(*details);
        } else if (event.type == "MetadataCaptured") {
            addMetadata(*details);
        }
    }
    TimelineSummary take() { return std::move(result_); }

  private:
    void addSignal(const Json& details) {
        const auto id = details.value("signalId", "");
        auto& counts = result_.counts;
        ++(id == "RageTap" ? counts.rageTaps : id == "DeadTap" ? counts.deadTaps : counts.errorTaps);
        if (const auto error = details.find("error"); error != details.end()) {
            addText(FoundText::Kind::error, error->value("message", ""));
        }
    }

    /// Of a screen that was there when the recording began, only the disappearance is in the timeline.
    void addScreens(const Json& details) {
        for (const auto& screen : details.at("screenHierarchy")) {
            addText(FoundText::Kind::screen, screen.value("screenName", ""));
        }
    }

    void addMetadata(const Json& details) {
        for (const auto& entry : details.at("metadata")) {
            const auto id = entry.value("metadataId", "");
            if (id == "DeviceModel") {
                result_.deviceModel = cutText(entry.value("metadataValue", ""), longestText);
            } else if (id == "OperatingSystem") {
                result_.deviceSystem = cutText(entry.value("metadataValue", ""), longestText);
            }
        }
    }

    void addText(FoundText::Kind kind, const std::string& whole) {
        auto value = cutText(whole, longestText);
        if (!value.empty() && result_.texts.size() < mostTexts && seen_.emplace(kind, value).second) {
            result_.texts.push_back({.kind = kind, .value = std::move(value)});
        }
    }

    TimelineSummary result_;
    std::set<std::pair<FoundText::Kind, std::string>> seen_;
};

}  // namespace

TimelineSummary summarise(const std::vector<TimelineEvent>& events) {
    Summing sum;
    for (const auto& event : events) {
        sum.add(event);
    }
    return sum.take();
}

std::string cutText(const std::string& text, std::size_t most) {
    std::size_t end = std::min(text.size(), most);
    // A byte 10xxxxxx continues a character.
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return text.substr(0, end);
}

}  // namespace mireth::receiver
