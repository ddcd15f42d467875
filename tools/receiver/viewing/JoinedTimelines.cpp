// Each part knows where it begins; reading copies from one part after the other.
#include "viewing/JoinedTimelines.hpp"

#include <algorithm>
#include <utility>

namespace mireth::receiver {

JoinedTimelines::JoinedTimelines(Store& store, const SessionContents& outline, const std::string& before,
                                 const std::string& after)
    : store_(store), sessionId_(outline.summary.session.id) {
    add(before + "[");
    bool first = true;
    for (const auto& chunk : outline.chunks) {
        if (chunk.events > 0) {
            if (!std::exchange(first, false)) {
                add(",");
            }
            add(chunk);
        }
    }
    add("]" + after);
}

void JoinedTimelines::add(std::string text) {
    const auto length = text.size();
    parts_.push_back({.begin = size_, .size = length, .text = std::move(text), .chunk = std::nullopt});
    size_ += length;
}

void JoinedTimelines::add(const Chunk& chunk) {
    // Without its brackets.
    const auto length = static_cast<std::uint64_t>(chunk.timelineBytes) - 2;
    parts_.push_back({.begin = size_, .size = length, .text = {}, .chunk = chunk.number});
    size_ += length;
}

bool JoinedTimelines::readAt(std::uint64_t offset, std::span<unsigned char> into) {
    if (offset > size_ || into.size() > size_ - offset) {
        return false;
    }
    auto part = std::prev(std::ranges::upper_bound(parts_, offset, {}, &Part::begin));
    while (!into.empty()) {
        const auto within = offset - part->begin;
        const auto count = std::min<std::uint64_t>(part->size - within, into.size());
        if (!read(*part, within, into.first(count))) {
            return false;
        }
        into = into.subspan(count);
        offset += count;
        ++part;
    }
    return true;
}

bool JoinedTimelines::read(const Part& part, std::uint64_t offset, std::span<unsigned char> into) {
    if (!part.chunk) {
        const auto bytes = std::string_view(part.text).substr(offset, into.size());
        std::ranges::copy(bytes, into.begin());
        return true;
    }
    if (number_ != part.chunk) {
        auto opened = store_.openTimeline(sessionId_, *part.chunk);
        open_ = opened ? std::move(*opened) : nullptr;
        number_ = part.chunk;
    }
    return open_ && open_->readAt(offset + 1, into);
}

}  // namespace mireth::receiver
