// A bounded walk over the file: the number of boxes and the bytes read into memory are capped.
#include "video/Mp4Boxes.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "video/BoxReader.hpp"

namespace mireth::receiver {
namespace {

constexpr std::uint64_t largestMovie = std::uint64_t{4} * 1024 * 1024;
constexpr std::size_t mostTopLevelBoxes = 4096;
constexpr std::uint64_t mostFrames = 65'536;
constexpr std::uint64_t longestSeconds = 86'400;

// "mdhd": version and flags, two times, time scale, duration; version 1 has the times and duration in 64
// bits.
Checked<std::int64_t> durationOf(BoxBytes header) {
    const bool wide = !header.empty() && header[0] == 1;
    const std::size_t scaleAt = wide ? 20 : 12;
    const std::size_t durationBytes = wide ? 8 : 4;
    if (header.size() < scaleAt + 4 + durationBytes) {
        return std::unexpected("box \"mdhd\" is too short");
    }
    const auto scale = bigEndian(header, scaleAt, 4);
    const auto duration = bigEndian(header, scaleAt + 4, durationBytes);
    if (scale == 0 || duration / scale >= longestSeconds) {
        return std::unexpected("box \"mdhd\" has no usable duration");
    }
    return static_cast<std::int64_t>((duration * 1000 + scale / 2) / scale);
}

// "stsz": version and flags, one size for all or 0, the count, and for 0 a size each.
Checked<std::int64_t> framesOf(BoxBytes sizes, std::uint64_t fileSize) {
    if (sizes.size() < 12) {
        return std::unexpected("box \"stsz\" is too short");
    }
    const auto common = bigEndian(sizes, 4, 4);
    const auto count = bigEndian(sizes, 8, 4);
    std::uint64_t total = common * count;
    if (common == 0) {
        if (sizes.size() - 12 != count * 4) {
            return std::unexpected("box \"stsz\" counts " + std::to_string(count) +
                                   " samples but its table is of another length");
        }
        for (std::uint64_t i = 0; i < count; ++i) {
            total += bigEndian(sizes, 12 + static_cast<std::size_t>(i) * 4, 4);
        }
    }
    if (count > mostFrames) {
        return std::unexpected("there are more than " + std::to_string(mostFrames) + " frames");
    }
    if (total > fileSize) {
        return std::unexpected("box \"stsz\" promises more bytes than the file has");
    }
    return static_cast<std::int64_t>(count);
}

Checked<bool> isVideo(BoxBytes track) {
    const auto handler = descend(track, {"mdia", "hdlr"});
    if (!handler) {
        return std::unexpected(handler.error());
    }
    if (handler->size() < 12) {
        return std::unexpected("box \"hdlr\" is too short");
    }
    return fourCharacters(*handler, 8) == "vide";
}

Checked<Mp4Facts> factsOf(BoxBytes track, std::uint64_t fileSize) {
    const auto header = descend(track, {"mdia", "mdhd"});
    if (!header) {
        return std::unexpected(header.error());
    }
    const auto sizes = descend(track, {"mdia", "minf", "stbl", "stsz"});
    if (!sizes) {
        return std::unexpected(sizes.error());
    }
    const auto duration = durationOf(*header);
    if (!duration) {
        return std::unexpected(duration.error());
    }
    const auto frames = framesOf(*sizes, fileSize);
    if (!frames) {
        return std::unexpected(frames.error());
    }
    return Mp4Facts{.frames = *frames, .durationMillis = *duration};
}

Checked<Mp4Facts> inspectMovie(BoxBytes movie, std::uint64_t fileSize) {
    const auto children = childrenOf(movie);
    if (!children) {
        return std::unexpected(children.error());
    }
    for (const auto& child : *children) {
        if (child.type != "trak") {
            continue;
        }
        const auto video = isVideo(child.content);
        if (!video) {
            return std::unexpected(video.error());
        }
        if (*video) {
            return factsOf(child.content, fileSize);
        }
    }
    return std::unexpected("there is no video track");
}

Checked<std::vector<unsigned char>> readMovie(ByteSource& file, std::uint64_t offset, const BoxHead& box) {
    if (box.size > largestMovie) {
        return std::unexpected("box \"moov\" is larger than " + std::to_string(largestMovie) + " bytes");
    }
    std::vector<unsigned char> movie(static_cast<std::size_t>(box.size - box.headBytes));
    if (!file.readAt(offset + box.headBytes, movie)) {
        return std::unexpected("the file cannot be read");
    }
    return movie;
}

}  // namespace

std::expected<Mp4Facts, std::string> inspectMp4(ByteSource& file) {
    const std::uint64_t size = file.size();
    std::optional<std::vector<unsigned char>> movie;
    std::size_t boxes = 0;
    for (std::uint64_t offset = 0; offset < size; ++boxes) {
        std::array<unsigned char, 16> start{};
        const std::span head(start.data(),
                             static_cast<std::size_t>(std::min<std::uint64_t>(16, size - offset)));
        if (!file.readAt(offset, head)) {
            return std::unexpected("the file cannot be read");
        }
        const auto box = readBoxHead(head, size - offset, true);
        if (!box) {
            return std::unexpected(box.error());
        }
        if (boxes == mostTopLevelBoxes) {
            return std::unexpected("more than " + std::to_string(mostTopLevelBoxes) + " boxes");
        }
        if ((boxes == 0) != (box->type == "ftyp")) {
            return std::unexpected("box \"ftyp\" is not the first and only one of its kind");
        }
        // Fragments have samples that no table in "moov" counts.
        if (box->type == "moof") {
            return std::unexpected("the video is in fragments");
        }
        if (box->type == "moov") {
            if (movie) {
                return std::unexpected("box \"moov\" stands twice");
            }
            auto content = readMovie(file, offset, *box);
            if (!content) {
                return std::unexpected(content.error());
            }
            movie = std::move(*content);
        }
        offset += box->size;
    }
    if (!movie) {
        return std::unexpected("box \"moov\" is missing");
    }
    return inspectMovie(*movie, size);
}

}  // namespace mireth::receiver
