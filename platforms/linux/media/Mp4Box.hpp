// A box of an MP4 file. Private to this folder.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace mireth::platform {

/// Filled from front to back (ISO 14496-12, 4.2); numbers are written with the highest byte first.
class Mp4Box {
  public:
    /// `type` has four characters.
    explicit Mp4Box(std::string_view type);
    /// With a version and flags.
    Mp4Box(std::string_view type, std::uint8_t version, std::uint32_t flags);

    /// As many bytes as the number's type has.
    template <std::unsigned_integral Number>
    Mp4Box& add(Number number) {
        for (std::size_t byte = sizeof number; byte-- > 0;) {
            bytes_.push_back(static_cast<std::byte>(number >> (8 * byte)));
        }
        return *this;
    }
    Mp4Box& add(std::span<const std::byte> bytes);
    Mp4Box& add(const Mp4Box& inner);
    /// Without an end mark.
    Mp4Box& add(std::string_view text);
    Mp4Box& addZeros(std::size_t count);

    /// In bytes, what was added so far and the head.
    std::size_t size() const noexcept { return bytes_.size(); }
    /// The whole box. Less than 4 GiB.
    std::vector<std::byte> bytes() const;

  private:
    /// The first four are the size's place.
    std::vector<std::byte> bytes_;
};

}  // namespace mireth::platform
