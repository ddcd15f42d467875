// What a file says of itself is believed only as far as its bytes go.
#include "video/BoxReader.hpp"

#include <algorithm>
#include <optional>

namespace mireth::receiver {
namespace {

constexpr std::size_t mostChildren = 1024;

// A box type is four bytes of the uploader's choice; it is named only when it is plain.
std::string named(std::string_view type) {
    for (const char c : type) {
        if (c < 0x20 || c > 0x7E) {
            return "a box";
        }
    }
    return "box \"" + std::string(type) + "\"";
}

Checked<BoxBytes> onlyChild(const std::vector<BoxChild>& children, std::string_view type) {
    std::optional<BoxBytes> found;
    for (const auto& child : children) {
        if (child.type == type && found) {
            return std::unexpected(named(type) + " stands twice in one box");
        }
        if (child.type == type) {
            found = child.content;
        }
    }
    if (!found) {
        return std::unexpected(named(type) + " is missing");
    }
    return *found;
}

}  // namespace

std::uint64_t bigEndian(BoxBytes bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = (value << 8U) | bytes[at + i];
    }
    return value;
}

std::string_view fourCharacters(BoxBytes bytes, std::size_t at) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, 4};
}

Checked<BoxHead> readBoxHead(BoxBytes head, std::uint64_t room, bool mayReachTheEnd) {
    if (head.size() < 8) {
        return std::unexpected("a box begins " + std::to_string(head.size()) +
                               " bytes before its parent ends");
    }
    BoxHead box{.type = fourCharacters(head, 4), .headBytes = 8, .size = bigEndian(head, 0, 4)};
    if (box.size == 1) {
        if (head.size() < 16) {
            return std::unexpected(named(box.type) + " is cut off in its size");
        }
        box.headBytes = 16;
        box.size = bigEndian(head, 8, 8);
    } else if (box.size == 0 && mayReachTheEnd) {
        box.size = room;
    }
    if (box.size < box.headBytes || box.size > room) {
        return std::unexpected(named(box.type) + " says it has " + std::to_string(box.size) +
                               " bytes where " + std::to_string(room) + " are left");
    }
    return box;
}

Checked<std::vector<BoxChild>> childrenOf(BoxBytes parent) {
    std::vector<BoxChild> children;
    while (!parent.empty()) {
        const auto box =
            readBoxHead(parent.first(std::min<std::size_t>(parent.size(), 16)), parent.size(), false);
        if (!box) {
            return std::unexpected(box.error());
        }
        if (children.size() == mostChildren) {
            return std::unexpected("more than " + std::to_string(mostChildren) + " boxes in one box");
        }
        const auto size = static_cast<std::size_t>(box->size);
        const auto head = static_cast<std::size_t>(box->headBytes);
        children.push_back({.type = box->type, .content = parent.subspan(head, size - head)});
        parent = parent.subspan(size);
    }
    return children;
}

Checked<BoxBytes> descend(BoxBytes from, std::initializer_list<std::string_view> path) {
    for (const auto type : path) {
        const auto children = childrenOf(from);
        if (!children) {
            return std::unexpected(children.error());
        }
        const auto next = onlyChild(*children, type);
        if (!next) {
            return std::unexpected(next.error());
        }
        from = *next;
    }
    return from;
}

}  // namespace mireth::receiver
