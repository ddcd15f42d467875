// Reads the chunk information part.
#include "wire/ChunkInfo.hpp"

#include "base/JsonText.hpp"
#include "base/ObjectReader.hpp"

namespace mireth::receiver {

std::expected<ChunkInfo, std::string> readChunkInfo(std::string_view text) {
    const auto json = parseJson(text, {.bytes = longestChunkInfo});
    if (!json) {
        return std::unexpected("the chunk information is " + json.error());
    }
    ObjectReader reader(*json);
    ChunkInfo info{.brandId = reader.text("brandId"),
                   .brandDc = reader.text("brandDc"),
                   .projectId = reader.text("projectId"),
                   .sessionId = reader.text("sessionId"),
                   .chunkNumber = reader.whole("chunkNumber"),
                   .chunkTimestamp = reader.whole("chunkTimestamp")};
    if (reader.whole("playbackDataVersion") != 1) {
        reader.complain("\"playbackDataVersion\" must be 1");
    }
    if (info.chunkNumber < 0 || info.chunkNumber > highestChunkNumber) {
        reader.complain("\"chunkNumber\" must be from 0 to " + std::to_string(highestChunkNumber));
    }
    if (const auto complaint = reader.complaint(); !complaint.empty()) {
        return std::unexpected("the chunk information: " + complaint);
    }
    return info;
}

}  // namespace mireth::receiver
