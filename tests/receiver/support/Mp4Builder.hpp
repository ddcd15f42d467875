// Builds MP4 files box by box, sound ones and ones that lie. Used wherever a test uploads a video.
#pragma once

#include <cstdint>
#include <string>

namespace mireth::receiver::test {

/// `value` as `count` big-endian bytes, however many.
std::string bigEndian(std::uint64_t value, int count);
/// A box with a 32-bit size.
std::string box(const std::string& type, const std::string& content);
/// A box with a 64-bit size.
std::string wideBox(const std::string& type, const std::string& content);

struct Mp4Shape {
    std::uint32_t frames = 20;
    std::uint32_t timeScale = 600;
    std::uint64_t duration = 6000;  ///< in time-scale units
    std::uint32_t bytesPerFrame = 10;
    bool wideHeader = false;  ///< version 1 of the media header
    std::string handler = "vide";
    char filler = 'x';  ///< what the samples are made of
};

std::string mediaHeader(const Mp4Shape& shape);
/// A "trak" box.
std::string track(const Mp4Shape& shape);
/// A whole file.
std::string mp4(const Mp4Shape& shape = {});

}  // namespace mireth::receiver::test
