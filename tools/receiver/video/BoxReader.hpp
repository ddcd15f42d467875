// The boxes of an MP4 file, one within the other (ISO/IEC 14496-12): every size is checked against the parent
// before it is used. Used by Mp4Boxes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

/// The content of a box, head excluded.
using BoxBytes = std::span<const unsigned char>;

/// A value, or what is wrong with which box.
template <typename T>
using Checked = std::expected<T, std::string>;

struct BoxHead {
    std::string_view type;  ///< four bytes of the bytes that were read
    std::uint64_t headBytes;
    std::uint64_t size;  ///< head included
};

struct BoxChild {
    std::string_view type;
    BoxBytes content;
};

/// `head` holds the first min(16, room) bytes of the box; `room` is what is left of its parent. Size 0 means
/// "to the end" where that is allowed.
Checked<BoxHead> readBoxHead(BoxBytes head, std::uint64_t room, bool mayReachTheEnd);

/// The boxes that fill `parent`, at most 1,024.
Checked<std::vector<BoxChild>> childrenOf(BoxBytes parent);

/// Goes down from a box's content through boxes that must each be there once.
Checked<BoxBytes> descend(BoxBytes from, std::initializer_list<std::string_view> path);

/// `count` bytes from `at` on, which must be there.
std::uint64_t bigEndian(BoxBytes bytes, std::size_t at, std::size_t count);
/// The four characters at `at`, which must be there.
std::string_view fourCharacters(BoxBytes bytes, std::size_t at);

}  // namespace mireth::receiver
