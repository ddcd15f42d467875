// PNG through Cairo, behind a look at the file's head.
#include "phone/PngFile.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "phone/CairoSurface.hpp"
#include "phone/JsonFile.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {

namespace {

constexpr std::size_t maximumBytes = std::size_t{16} << 20U;

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& why) {
    throw ScenarioError("", "the picture " + file.string() + " " + why);
}

/// A big-endian word, as PNG writes its numbers.
std::uint32_t wordAt(std::string_view bytes, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        word = word << 8U | static_cast<unsigned char>(bytes[offset + index]);
    }
    return word;
}

/// Signature and first chunk, after the PNG specification (ISO/IEC 15948) sections 5.2 and 11.2.2.
void requireModestPng(std::string_view bytes, const std::filesystem::path& file) {
    constexpr std::string_view signature("\x89PNG\r\n\x1a\n", 8);
    constexpr std::size_t headSize = 33;
    if (bytes.size() < headSize || !bytes.starts_with(signature) || bytes.substr(12, 4) != "IHDR") {
        fail(file, "is not a PNG file");
    }
    const std::uint32_t width = wordAt(bytes, 16);
    const std::uint32_t height = wordAt(bytes, 20);
    if (width == 0 || height == 0 || width > maximumPictureSide || height > maximumPictureSide) {
        fail(file, "must have sides of 1 to " + std::to_string(maximumPictureSide) + " pixels");
    }
}

/// Hands the bytes to Cairo piece by piece.
struct ByteStream {
    std::string_view left;

    static cairo_status_t read(void* closure, unsigned char* data, unsigned int length) {
        auto& stream = *static_cast<ByteStream*>(closure);
        if (stream.left.size() < length) {
            return CAIRO_STATUS_READ_ERROR;
        }
        std::memcpy(data, stream.left.data(), length);
        stream.left.remove_prefix(length);
        return CAIRO_STATUS_SUCCESS;
    }
};

/// Whatever format Cairo chose, as ARGB words without padding.
platform::Image toImage(cairo_surface_t* picture, double scale) {
    const int width = cairo_image_surface_get_width(picture);
    const int height = cairo_image_surface_get_height(picture);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    {
        const CairoSurface target(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, width, height, width * 4));
        const Cairo context(cairo_create(target.get()));
        cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
        cairo_set_source_surface(context.get(), picture, 0, 0);
        cairo_paint(context.get());
        cairo_surface_flush(target.get());
    }
    return {static_cast<std::size_t>(width), static_cast<std::size_t>(height), std::move(pixels), scale};
}

}  // namespace

platform::Image readPng(const std::filesystem::path& file, double scale) {
    std::string bytes;
    try {
        bytes = readWholeFile(file, maximumBytes, false);
    } catch (const ScenarioError& error) {
        fail(file, error.what());
    }
    requireModestPng(bytes, file);
    ByteStream stream{bytes};
    const CairoSurface picture(cairo_image_surface_create_from_png_stream(ByteStream::read, &stream));
    if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) {
        fail(file, "is a damaged PNG file");
    }
    return toImage(picture.get(), scale);
}

std::optional<std::string> writePng(const platform::Image& image, const std::filesystem::path& file) {
    if (!image.hasBitmap()) {
        return "there is no bitmap";
    }
    std::vector<std::uint32_t> pixels(image.pixels().begin(), image.pixels().end());
    const auto width = static_cast<int>(image.pixelWidth());
    const CairoSurface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, width,
        static_cast<int>(image.pixelHeight()), width * 4));
    const cairo_status_t status = cairo_surface_write_to_png(surface.get(), file.c_str());
    return status == CAIRO_STATUS_SUCCESS ? std::nullopt
                                          : std::optional<std::string>(cairo_status_to_string(status));
}

}  // namespace mireth::phone
