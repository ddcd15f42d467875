#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"

#include <openssl/evp.h>

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>

#include "PrivateSide/Extensions/CALayerExtensions/TextSerializable.hpp"

namespace mireth {

using platform::View;

namespace {

/// Two lowercase digits a byte.
std::string hexadecimal(std::span<const unsigned char> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text;
}

std::string sha256(const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    if (EVP_Digest(text.data(), text.size(), digest.data(), &length, EVP_sha256(), nullptr) != 1) {
        throw std::runtime_error("SHA-256 is not available.");
    }
    return hexadecimal(std::span(digest).first(length));
}

/// Where in a table of `places` a type belongs; several types may share a place.
std::size_t placeOf(const std::type_info* type, std::size_t places) {
    // The lowest bits of all type information are the same.
    constexpr std::size_t alignment = alignof(std::type_info);
    return reinterpret_cast<std::uintptr_t>(type) / alignment % places;
}

}  // namespace

std::string ViewContentComparator::serializeContent() {
    std::string text;
    if (const auto root = rootView_.lock()) {
        text.reserve(expectedLength_);
        ViewTreeWalk walk;
        serialize(*root, walk, text);
        expectedLength_ = text.size();
    }
    return text;
}

bool ViewContentComparator::compareContent(const std::string& before, const std::string& after) {
    return sha256(before) == sha256(after);
}

void ViewContentComparator::serialize(const View& view, ViewTreeWalk& walk, std::string& text) {
    if (walk.isEndless(view)) {
        return;
    }
    const std::type_info* type = &typeid(view);
    const std::type_info*& known = typesWithoutText_[placeOf(type, typesWithoutText_.size())];
    if (known != type && !appendSerialized(text, view)) {
        known = type;
    }
    const ViewTreeWalk::Level level(walk, view);
    for (const auto& subview : level.subviews()) {
        serialize(*subview, walk, text);
    }
}

}  // namespace mireth
