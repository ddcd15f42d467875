// The timelines of a session's chunks as one JSON array with a text before and after it, put together while
// it is sent: all of it may be too long to be held.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/ByteSource.hpp"
#include "store/Records.hpp"
#include "store/Store.hpp"

namespace mireth::receiver {

class JoinedTimelines final : public ByteSource {
  public:
    /// `outline` is of a session in `store`, which outlives the object.
    JoinedTimelines(Store& store, const SessionContents& outline, const std::string& before = {},
                    const std::string& after = {});

    std::uint64_t size() const override { return size_; }
    /// False, too, when the session was removed meanwhile.
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override;

  private:
    struct Part {
        std::uint64_t begin = 0;
        std::uint64_t size = 0;
        std::string text;                   ///< of a part that is no chunk's
        std::optional<std::int64_t> chunk;  ///< whose events these are
    };

    void add(std::string text);
    void add(const Chunk& chunk);
    bool read(const Part& part, std::uint64_t offset, std::span<unsigned char> into);

    Store& store_;
    const std::string sessionId_;
    std::vector<Part> parts_;
    std::uint64_t size_ = 0;
    std::optional<std::int64_t> number_;  ///< of the chunk that is open
    std::unique_ptr<ByteSource> open_;
};

}  // namespace mireth::receiver
