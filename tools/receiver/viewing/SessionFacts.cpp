// Event by event: a timeline that is built whole takes many times its length.
#include "viewing/SessionFacts.hpp"

#include <nlohmann/json.hpp>

#include "base/JsonText.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

bool mayHoldFacts(std::string_view text) {
    return text.find("WindowDimensions") != std::string_view::npos ||
           text.find("MetadataCaptured") != std::string_view::npos;
}

void takeEvent(const Json& event, SessionFacts& facts) {
    const auto type = event.value("type", "");
    if (type == "WindowDimensions") {
        const auto& details = event.at("eventDetails");
        facts.window =
            jsonText({{"widthPx", details.at("windowWidthPx")}, {"heightPx", details.at("windowHeightPx")}});
    } else if (type == "MetadataCaptured") {
        for (const auto& entry : event.at("eventDetails").at("metadata")) {
            facts.metadata[entry.value("metadataId", "")] = entry.value("metadataValue", "");
        }
    }
}

}  // namespace

void SessionFacts::take(std::string_view timeline) {
    auto elements = elementsOf(timeline);
    // Few chunks hold any.
    if (!elements || !mayHoldFacts(timeline)) {
        return;
    }
    while (const auto element = nextElement(*elements)) {
        if (!mayHoldFacts(*element)) {
            continue;
        }
        if (const auto event = parseJson(*element, {.bytes = element->size()})) {
            takeEvent(*event, *this);
        }
    }
}

Stored<SessionFacts> readFacts(Store& store, const SessionContents& outline) {
    SessionFacts facts;
    for (const auto& chunk : outline.chunks) {
        const auto timeline = store.openTimeline(outline.summary.session.id, chunk.number);
        if (!timeline) {
            return std::unexpected(timeline.error());
        }
        std::string text(*timeline ? (*timeline)->size() : 0, '\0');
        if (*timeline &&
            (*timeline)->readAt(0, {reinterpret_cast<unsigned char*>(text.data()), text.size()})) {
            facts.take(text);
        }
    }
    return facts;
}

}  // namespace mireth::receiver
