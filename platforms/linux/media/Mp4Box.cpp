#include "platforms/linux/media/Mp4Box.hpp"

namespace mireth::platform {

Mp4Box::Mp4Box(std::string_view type) {
    addZeros(sizeof(std::uint32_t));
    add(type);
}

Mp4Box::Mp4Box(std::string_view type, std::uint8_t version, std::uint32_t flags) : Mp4Box(type) {
    add(std::uint32_t{version} << 24U | flags);
}

Mp4Box& Mp4Box::add(std::span<const std::byte> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
}

Mp4Box& Mp4Box::add(const Mp4Box& inner) {
    return add(std::span<const std::byte>(inner.bytes()));
}

Mp4Box& Mp4Box::add(std::string_view text) {
    return add(std::as_bytes(std::span(text)));
}

Mp4Box& Mp4Box::addZeros(std::size_t count) {
    bytes_.insert(bytes_.end(), count, std::byte{0});
    return *this;
}

std::vector<std::byte> Mp4Box::bytes() const {
    std::vector<std::byte> whole = bytes_;
    for (std::size_t byte = 0; byte < sizeof(std::uint32_t); ++byte) {
        whole[byte] = static_cast<std::byte>(whole.size() >> (8 * (3 - byte)));
    }
    return whole;
}

}  // namespace mireth::platform
