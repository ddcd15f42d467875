// Looks at the shape of an uploaded MP4 file, without decoding a picture. Used before a chunk is kept and for
// the counts that are shown of it. The structure is that of ISO/IEC 14496-12.
#pragma once

#include <cstdint>
#include <expected>
#include <string>

#include "base/ByteSource.hpp"

namespace mireth::receiver {

/// What the file says of its first video track.
struct Mp4Facts {
    std::int64_t frames = 0;          ///< samples, from its sample-size box
    std::int64_t durationMillis = 0;  ///< from its media header, rounded to the nearest
};

/// Checks that `file` is a run of boxes that fill it exactly, "ftyp" first and one "moov" among them, that
/// the boxes within "moov" fill their parents, that there is a video track whose header and sample sizes can
/// be read, and that those samples fit into the file, are at most 65,536 and last less than a day; nothing
/// may be in fragments. The error says what is wrong with which box.
std::expected<Mp4Facts, std::string> inspectMp4(ByteSource& file);

}  // namespace mireth::receiver
