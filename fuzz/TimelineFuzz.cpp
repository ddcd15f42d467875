// What is kept of a timeline or of a chunk's description can be read again.
#include <nlohmann/json.hpp>

#include "Property.hpp"
#include "base/PrintableText.hpp"
#include "wire/ChunkInfo.hpp"
#include "wire/TimelineValidator.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mireth;
    const std::string_view text = fuzz::textOf(data, size);
    if (const auto events = receiver::validateTimeline(text, 0)) {
        for (const auto& event : *events) {
            fuzz::require(!event.type.empty(), "an event has a type");
            fuzz::require(event.details.empty() || nlohmann::json::accept(event.details), "details are JSON");
        }
    } else {
        fuzz::require(receiver::isUtf8(events.error()), "a refusal can be shown");
    }
    if (const auto info = receiver::readChunkInfo(text)) {
        fuzz::require(info->chunkNumber >= 0 && info->chunkNumber <= receiver::highestChunkNumber,
                      "a chunk's number is in range");
    }
    return 0;
}
