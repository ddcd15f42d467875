// The few boxes that matter, as ISO/IEC 14496-12 lays them out.
#include "support/Mp4Builder.hpp"

namespace mireth::receiver::test {

std::string bigEndian(std::uint64_t value, int count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
        *byte = static_cast<char>(value & 0xFFU);
        value >>= 8U;
    }
    return bytes;
}

std::string box(const std::string& type, const std::string& content) {
    return bigEndian(content.size() + 8, 4) + type + content;
}

std::string wideBox(const std::string& type, const std::string& content) {
    return bigEndian(1, 4) + type + bigEndian(content.size() + 16, 8) + content;
}

std::string mediaHeader(const Mp4Shape& shape) {
    const int wide = shape.wideHeader ? 8 : 4;
    return box("mdhd", bigEndian(shape.wideHeader ? 1 : 0, 1) + bigEndian(0, 3) + bigEndian(0, wide) +
                           bigEndian(0, wide) + bigEndian(shape.timeScale, 4) +
                           bigEndian(shape.duration, wide) + bigEndian(0, 4));
}

std::string track(const Mp4Shape& shape) {
    std::string sizes = bigEndian(0, 4) + bigEndian(0, 4) + bigEndian(shape.frames, 4);
    for (std::uint32_t i = 0; i < shape.frames; ++i) {
        sizes += bigEndian(shape.bytesPerFrame, 4);
    }
    const auto handler = box("hdlr", bigEndian(0, 8) + shape.handler + bigEndian(0, 13));
    const auto table = box("stbl", box("stsd", bigEndian(0, 8)) + box("stsz", sizes));
    return box("trak", box("tkhd", bigEndian(0, 84)) +
                           box("mdia", mediaHeader(shape) + handler + box("minf", table)));
}

std::string mp4(const Mp4Shape& shape) {
    return box("ftyp", "isom" + bigEndian(512, 4) + "isom") +
           box("mdat", std::string(std::size_t{shape.frames} * shape.bytesPerFrame, shape.filler)) +
           box("moov", box("mvhd", bigEndian(0, 100)) + track(shape));
}

}  // namespace mireth::receiver::test
