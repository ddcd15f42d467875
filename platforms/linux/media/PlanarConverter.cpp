#include "platforms/linux/media/PlanarConverter.hpp"

extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include <utility>

namespace mireth::platform {

namespace {

/// Rows begin where vector instructions like to read.
constexpr int rowAlignment = 32;

int aligned(int length) {
    return (length + rowAlignment - 1) / rowAlignment * rowAlignment;
}

}  // namespace

void PlanarConverter::ScalerDeleter::operator()(SwsContext* scaler) const noexcept {
    sws_freeContext(scaler);
}

PlanarConverter::PlanarConverter(int width, int height, std::unique_ptr<SwsContext, ScalerDeleter> scaler)
    : width_(width),
      height_(height),
      scaler_(std::move(scaler)),
      planes_(static_cast<std::size_t>(aligned(width) + aligned(width / 2)) *
              static_cast<std::size_t>(height)) {}

std::expected<PlanarConverter, std::string> PlanarConverter::create(int width, int height) {
    // The premultiplied channels are the colours on black already; alpha is not read.
    constexpr AVPixelFormat words = AV_PIX_FMT_RGB32;
    constexpr int flags = SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP | SWS_BITEXACT;
    std::unique_ptr<SwsContext, ScalerDeleter> scaler(sws_getContext(
        width, height, words, width, height, AV_PIX_FMT_YUV420P, flags, nullptr, nullptr, nullptr));
    if (scaler == nullptr) {
        return std::unexpected("No colour conversion for frames of " + std::to_string(width) + " x " +
                               std::to_string(height) + " pixels");
    }
    const int* const bt601 = sws_getCoefficients(SWS_CS_ITU601);
    constexpr int fullRange = 1;
    constexpr int limitedRange = 0;
    constexpr int unchanged = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), bt601, fullRange, bt601, limitedRange, 0, unchanged, unchanged);
    return PlanarConverter(width, height, std::move(scaler));
}

std::expected<PlanarPicture, std::string> PlanarConverter::convert(const std::byte* pixels,
                                                                   std::size_t bytesPerRow) {
    PlanarPicture picture;
    picture.width = width_;
    picture.height = height_;
    const int lumaRow = aligned(width_);
    const int chromaRow = aligned(width_ / 2);
    const std::ptrdiff_t lumaSize = std::ptrdiff_t{lumaRow} * height_;
    const std::ptrdiff_t chromaSize = std::ptrdiff_t{chromaRow} * (height_ / 2);
    picture.planes[0] = planes_.data();
    picture.planes[1] = planes_.data() + lumaSize;
    picture.planes[2] = planes_.data() + lumaSize + chromaSize;
    picture.bytesPerRow[0] = lumaRow;
    picture.bytesPerRow[1] = chromaRow;
    picture.bytesPerRow[2] = chromaRow;
    const auto* const source = reinterpret_cast<const std::uint8_t*>(pixels);
    const int sourceRow = static_cast<int>(bytesPerRow);
    const int rows =
        sws_scale(scaler_.get(), &source, &sourceRow, 0, height_, picture.planes, picture.bytesPerRow);
    if (rows != height_) {
        return std::unexpected("The colour conversion of a frame stopped at row " + std::to_string(rows) +
                               " of " + std::to_string(height_));
    }
    return picture;
}

}  // namespace mireth::platform
