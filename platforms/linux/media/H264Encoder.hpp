// H.264 for pictures of user interfaces, by OpenH264.
#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <vector>

#include "platforms/linux/media/PlanarConverter.hpp"

class ISVCEncoder;

namespace mireth::platform {

/// One coded picture (an access unit in the byte stream format of ITU-T H.264 Annex B), without parameter
/// sets.
struct EncodedPicture {
    std::vector<std::byte> bytes;
    bool isKeyFrame = false;
};

/// Codes pictures of one size in the order they come, none of them dropped or reordered; the first is a key
/// frame. The same pictures give the same bytes. One thread at a time; encodes on the caller's.
class H264Encoder {
  public:
    /// Whether pictures of this size can be coded: even sides of at least 16 pixels, within level 5.1.
    static bool supports(int width, int height) noexcept;
    static std::expected<H264Encoder, std::string> create(int width, int height);

    /// `milliseconds` since the first picture.
    std::expected<EncodedPicture, std::string> encode(const PlanarPicture& picture, long long milliseconds);

    /// The sequence and picture parameter sets (Annex B); empty before the first picture.
    const std::vector<std::byte>& parameterSets() const noexcept { return parameterSets_; }

  private:
    struct EncoderDeleter {
        void operator()(ISVCEncoder* encoder) const noexcept;
    };

    explicit H264Encoder(std::unique_ptr<ISVCEncoder, EncoderDeleter> encoder);

    std::unique_ptr<ISVCEncoder, EncoderDeleter> encoder_;
    std::vector<std::byte> parameterSets_;
};

}  // namespace mireth::platform
